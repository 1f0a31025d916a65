// The module of PROJ: reference systems and transformations between them.

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstring>
#include <mutex>
#include <vector>

#include <proj.h>

#include "kit/base/error.h"
#include "kit/base/number_text.h"
#include "kit/base/projection_library.h"

namespace korvel::kit {
namespace {

template <auto destroy>
struct Destroy {
    template <class Thing>
    void operator()(Thing* thing) const {
        destroy(thing);
    }
};
using ProjContext = std::unique_ptr<PJ_CONTEXT, Destroy<proj_context_destroy>>;
using ProjObject = std::unique_ptr<PJ, Destroy<proj_destroy>>;

// One that neither prints nor uses the network. It serves one thread at a time.
ProjContext quiet_context() {
    ProjContext context(proj_context_create());
    proj_log_level(context.get(), PJ_LOG_NONE);
    proj_context_set_enable_network(context.get(), 0);
    return context;
}

// A definition as PROJ distinguishes it from an operation.
std::string as_system(const std::string& definition) {
    const bool has_parameters = definition.find("proj=") != std::string::npos;
    const bool has_type = definition.find("type=crs") != std::string::npos;
    return has_parameters && !has_type ? definition + " +type=crs" : definition;
}

ProjObject system_of(PJ_CONTEXT* context, const std::string& definition) {
    ProjObject object(proj_create(context, as_system(definition).c_str()));
    if (object == nullptr || proj_is_crs(object.get()) == 0) {
        throw input_error(definition + ": not a reference system that PROJ knows",
                          {.value = definition});
    }
    return object;
}

// Without the height of a compound system and the shift that is bound to a system.
ProjObject horizontal(PJ_CONTEXT* context, ProjObject system) {
    for (;;) {
        const PJ_TYPE type = proj_get_type(system.get());
        if (type == PJ_TYPE_COMPOUND_CRS) {
            system.reset(proj_crs_get_sub_crs(context, system.get(), 0));
        } else if (type == PJ_TYPE_BOUND_CRS) {
            system.reset(proj_get_source_crs(context, system.get()));
        } else {
            return system;
        }
    }
}

bool is_in_degrees(PJ_CONTEXT* context, const PJ* system) {
    const ProjObject axes(proj_crs_get_coordinate_system(context, system));
    const char* unit = nullptr;
    return proj_cs_get_axis_info(context, axes.get(), 0, nullptr, nullptr, nullptr, nullptr, &unit,
                                 nullptr, nullptr) != 0 &&
           std::strcmp(unit, "degree") == 0;
}

// "EPSG:25832", if a system is recorded under a code or is equal to one that is; else empty.
std::string code_of(PJ_CONTEXT* context, const PJ* system) {
    const auto recorded = [](const PJ* object) -> std::string {
        const char* authority = proj_get_id_auth_name(object, 0);
        const char* code = proj_get_id_code(object, 0);
        if (authority == nullptr || code == nullptr) {
            return {};
        }
        const std::string id = std::string(authority) + ":" + code;
        return id == "OGC:CRS84" ? "EPSG:4326" : id; // which differ in the order of axes alone
    };
    std::string code = recorded(system);
    if (code.empty()) {
        constexpr int equal_but_for_names = 90; // percent
        int* confidence = nullptr;
        PJ_OBJ_LIST* found = proj_identify(context, system, "EPSG", nullptr, &confidence);
        if (found != nullptr && proj_list_get_count(found) > 0 &&
            confidence[0] >= equal_but_for_names) {
            code = recorded(ProjObject(proj_list_get(context, found, 0)).get());
        }
        proj_int_list_destroy(confidence);
        proj_list_destroy(found);
    }
    return code.rfind("EPSG:", 0) == 0 ? code : std::string();
}

class ProjProjection : public MapProjection {
public:
    ProjProjection(const std::string& from, const std::string& to)
        : from_(from), to_(to), context_(quiet_context()) {
        const ProjObject source = system_of(context_.get(), from);
        const ProjObject target = system_of(context_.get(), to);
        const ProjObject way(proj_create_crs_to_crs_from_pj(context_.get(), source.get(),
                                                            target.get(), nullptr, nullptr));
        if (way != nullptr) { // x is to be the longitude whatever the systems' order of axes
            way_.reset(proj_normalize_for_visualization(context_.get(), way.get()));
        }
        if (way_ == nullptr) {
            throw input_error("PROJ has no transformation from " + from + " to " + to);
        }
    }

    void forward(std::span<Point2> points) const override { transform(points, PJ_FWD, to_); }
    void back(std::span<Point2> points) const override { transform(points, PJ_INV, from_); }

private:
    void transform(std::span<Point2> points, PJ_DIRECTION direction, const std::string& to) const {
        constexpr std::size_t points_at_once = 256; // whose input a message may have to name
        std::array<Point2, points_at_once> input;
        const std::lock_guard lock(mutex_);
        while (!points.empty()) {
            const std::span<Point2> part = points.first(std::min(points.size(), points_at_once));
            std::copy(part.begin(), part.end(), input.begin());
            proj_errno_reset(way_.get());
            proj_trans_generic(way_.get(), direction, part.data()->data(), sizeof(Point2),
                               part.size(), part.data()->data() + 1, sizeof(Point2), part.size(),
                               nullptr, 0, 0, nullptr, 0, 0);
            for (std::size_t i = 0; i < part.size(); ++i) {
                if (!std::isfinite(part[i][0]) || !std::isfinite(part[i][1])) {
                    fail(input[i], to);
                }
            }
            points = points.subspan(part.size());
        }
    }

    [[noreturn]] void fail(const Point2& point, const std::string& to) const {
        const std::string text = number_text(point[0]) + "," + number_text(point[1]);
        const int error = proj_errno(way_.get());
        const std::string reason =
            error == 0 ? std::string()
                       : std::string(": ") + proj_context_errno_string(context_.get(), error);
        throw input_error("the point " + text + " has no position in " + to + reason,
                          {.value = text});
    }

    std::string from_;
    std::string to_;
    ProjContext context_;
    ProjObject way_;
    mutable std::mutex mutex_; // of the context and all that belongs to it
};

class Proj : public ProjectionLibrary {
public:
    std::shared_ptr<const MapProjection> projection(const std::string& from,
                                                    const std::string& to) const override {
        return std::make_shared<ProjProjection>(from, to);
    }

    bool is_geographic(const std::string& reference) const override {
        const ProjContext context = quiet_context();
        const ProjObject system = horizontal(context.get(), system_of(context.get(), reference));
        const PJ_TYPE type = proj_get_type(system.get());
        return (type == PJ_TYPE_GEOGRAPHIC_2D_CRS || type == PJ_TYPE_GEOGRAPHIC_3D_CRS) &&
               is_in_degrees(context.get(), system.get());
    }

    std::string short_reference(const std::string& definition) const override {
        const ProjContext context = quiet_context();
        const ProjObject system = system_of(context.get(), definition);
        std::string code = code_of(context.get(), system.get());
        if (!code.empty()) {
            return code;
        }
        const std::array<const char*, 2> options = {"MULTILINE=NO", nullptr};
        const char* text = proj_as_wkt(context.get(), system.get(), PJ_WKT2_2019, options.data());
        return text != nullptr ? text : definition;
    }

    std::string name(const std::string& reference) const override {
        const ProjContext context = quiet_context();
        const ProjObject system = system_of(context.get(), reference);
        const char* name = proj_get_name(system.get());
        const bool has_name = name != nullptr && std::strcmp(name, "unknown") != 0;
        return has_name ? name : reference;
    }

    std::string datum(const std::string& reference) const override {
        const ProjContext context = quiet_context();
        const ProjObject system = system_of(context.get(), reference);
        const ProjObject base(proj_crs_get_geodetic_crs(context.get(), system.get()));
        const char* text = base != nullptr
                               ? proj_as_proj_string(context.get(), base.get(), PJ_PROJ_5, nullptr)
                               : nullptr;
        if (text == nullptr) {
            throw input_error(reference + ": has no datum on the earth", {.value = reference});
        }
        return parameters_of_datum(text);
    }

private:
    // Of "+proj=longlat +datum=WGS84 +no_defs +type=crs" what is neither projection nor type.
    static std::string parameters_of_datum(const std::string& text) {
        std::string parameters;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = std::min(text.find(' ', at), text.size());
            const std::string parameter = text.substr(at, end - at);
            at = end + 1;
            if (parameter.rfind("+proj=", 0) != 0 && parameter.rfind("+type=", 0) != 0 &&
                parameter != "+no_defs") {
                parameters += (parameters.empty() ? "" : " ") + parameter;
            }
        }
        return parameters;
    }
};

} // namespace
} // namespace korvel::kit

extern "C" __attribute__((visibility("default"))) const void* korvel_module(const char* version) {
    using namespace korvel::kit;
    static const Proj proj;
    const ProjectionLibrary* interface = &proj;
    return std::strcmp(version, KORVEL_VERSION) == 0 ? interface : nullptr;
}
