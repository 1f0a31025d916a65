#include "kit/base/projection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <regex>

#include "kit/base/error.h"
#include "kit/base/module.h"
#include "kit/base/number_text.h"
#include "kit/base/projection_library.h"

namespace korvel::kit {
namespace {

// How the definitions of `equal_area_about` begin.
constexpr const char* lambert = "+proj=laea ";
constexpr const char* equal_earth = "+proj=eqearth";

// "Lambert azimuthal equal-area about 10.5,50.2", if it is one of these.
std::string name_of_equal_area(const std::string& definition);

const Module& module_of_proj() {
#if defined(KORVEL_WITH_PROJ)
    static const Module module = load_module("korvel-proj");
#else
    static const Module module = module_left_out("KORVEL_WITH_PROJ");
#endif
    return module;
}

const ProjectionLibrary* library() {
    return static_cast<const ProjectionLibrary*>(module_of_proj().implementation);
}

const ProjectionLibrary& library_for(const std::string& reference) {
    if (library() == nullptr) {
        throw input_error(reference + ": reference systems need PROJ, " + module_of_proj().missing,
                          {.value = reference});
    }
    return *library();
}

std::string in_one_line(const std::string& definition) {
    static const std::regex white(R"(^\s+|\s+$|\s*[\r\n]\s*)");
    return std::regex_replace(definition, white, "");
}

bool is_code(const std::string& reference) {
    return reference.rfind("EPSG:", 0) == 0;
}

} // namespace

bool has_projections() {
    return library() != nullptr;
}

std::shared_ptr<const MapProjection> projection(const std::string& from, const std::string& to) {
    return library_for(from).projection(from, to);
}

bool is_geographic(const std::string& reference) {
    for (const char* known : {"EPSG:4326", "EPSG:4269", "OGC:CRS84"}) {
        if (reference == known) {
            return true;
        }
    }
    return !reference.empty() && library_for(reference).is_geographic(reference);
}

std::string short_reference(const std::string& definition) {
    std::string line = in_one_line(definition);
    if (line.empty() || line == "EPSG:4326") {
        return line;
    }
    return library() != nullptr ? library()->short_reference(line) : line;
}

std::string reference_name(const std::string& reference) {
    if (std::string own = name_of_equal_area(reference); !own.empty()) {
        return own;
    }
    if (reference.empty() || library() == nullptr) {
        return reference;
    }
    const std::string name = library()->name(reference);
    return is_code(reference) ? name + " (" + reference + ")" : name;
}

namespace {

std::string name_of_equal_area(const std::string& definition) {
    const auto parameter = [&](const std::string& key) {
        const std::size_t at = definition.find(key);
        return at == std::string::npos
                   ? std::string()
                   : definition.substr(at + key.size(), definition.find(' ', at) - at - key.size());
    };
    if (definition.starts_with(lambert)) {
        return "Lambert azimuthal equal-area about " + parameter("+lon_0=") + "," +
               parameter("+lat_0=");
    }
    return definition.starts_with(equal_earth) ? "Equal Earth about " + parameter("+lon_0=") + ",0"
                                               : std::string();
}

} // namespace

std::string equal_area_about(const std::string& reference, const Rectangle& degrees) {
    const auto in_tenths = [](double degree) {
        return number_text(std::clamp(std::round(degree * 10) / 10, -540.0, 540.0));
    };
    const std::string x = in_tenths((degrees.left + degrees.right) / 2);
    const std::string y = in_tenths((degrees.top + degrees.bottom) / 2);
    const bool is_large = degrees.right - degrees.left > 180 || degrees.bottom - degrees.top > 180;
    const std::string projection = is_large ? equal_earth : std::string(lambert) + "+lat_0=" + y;
    return projection + " +lon_0=" + x + " " + library_for(reference).datum(reference) +
           " +units=m +type=crs";
}

} // namespace korvel::kit
