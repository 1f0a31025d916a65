#include "apps/command/model_input.h"

#include <algorithm>

#include "apps/command/arguments.h"
#include "apps/command/messages.h"

namespace korvel::command {

kit::Solids load_solids(const std::string& file) {
    return kit::Solids::read(file, {.on_warning = warn});
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

std::string model_figures(const kit::Solids& solids) {
    return model_figures(solids.model());
}

std::string bounds_text(const kit::Solids& solids) {
    return bounds_text(solids.model().wrap_cuboid, 3);
}

double volume_of_bodies(const TMOD3D& model) {
    double volume = 0;
    for (const BODY3D& body : model.bodies) {
        volume += body.volume;
    }
    return volume;
}

void warn_of_rounding(const kit::Solids& solids, const std::string& advice) {
    const double change = solids.change_by_file();
    const kit::Box box = solids.bounds();
    double extent = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        extent = std::max(extent, box.high[k] - box.low[k]);
    }
    if (change > 1e-5 * extent) {
        warn("the file holds six decimals and is read in single precision, which moves vertices by "
             "up to " +
             number_text(change) + advice);
    }
}

} // namespace korvel::command
