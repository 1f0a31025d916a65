#include "apps/command/model_input.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "apps/command/arguments.h"
#include "apps/command/messages.h"
#include "kit/base/error.h"
#include "kit/files/file_kind.h"
#include "kit/files/model_file.h"

namespace korvel::command {
namespace {

double largest_change_by_file(const TMOD3D& model);

} // namespace

void load_model(const std::string& file, TMOD3D& out) {
    const kit::TextFile text(file);
    try {
        if (const auto note = kit::read_model(text, out)) {
            warn(*note);
        }
    } catch (const kit::Error&) {
        const kit::FileKind kind = kit::kind_of(text);
        // A damaged model may follow another kind farther.
        if (kind != kit::FileKind::model && kit::is_whole(text, kind)) {
            throw kit::input_error(file + ": is a " + kit::kind_name(kind) +
                                   ", not a body model file");
        }
        throw;
    }
}

void check_number(const std::string& option, int number, int size, const std::string& thing,
                  const std::string& file) {
    if (number < 0 || number >= size) {
        refuse(option, std::to_string(number),
               "a " + thing + " of " + file + ", they go from 0 to " + std::to_string(size - 1));
    }
}

std::string model_figures(const TMOD3D& model) {
    return counted(model.verts.GetSize(), "vertex", "vertices") + ", " +
           counted(model.lines.GetSize(), "edge") + ", " + counted(model.polys.GetSize(), "face") +
           ", volume " + number_text(volume_of_bodies(model));
}

double volume_of_bodies(const TMOD3D& model) {
    double volume = 0;
    for (const BODY3D& body : model.bodies) {
        volume += body.volume;
    }
    return volume;
}

void warn_of_rounding(const TMOD3D& model, const std::string& advice) {
    const double change = largest_change_by_file(model);
    double extent = 0;
    for (int k = 0; k < 3; ++k) {
        extent = std::max(extent, model.cuboid_max[k] - model.cuboid_min[k]);
    }
    if (change > 1e-5 * extent) {
        warn("the file holds six decimals and is read in single precision, which moves vertices by "
             "up to " +
             number_text(change) + advice);
    }
}

namespace {

double largest_change_by_file(const TMOD3D& model) {
    double largest = 0;
    for (const VERT3D& vertex : model.verts) {
        for (const double coordinate : vertex.model_xyz) {
            char digits[400];
            std::snprintf(digits, sizeof digits, "%f", coordinate);
            const double read = std::strtof(digits, nullptr);
            largest = std::max(largest, std::abs(read - coordinate));
        }
    }
    return largest;
}

} // namespace
} // namespace korvel::command
