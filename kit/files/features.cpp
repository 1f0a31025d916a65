#include "kit/files/features.h"

#include "kit/files/text_file.h"

namespace korvel::kit {

Features triangles_apart(const Features& features) {
    Features apart = features;
    apart.is_tin = false;
    apart.features.clear();
    for (std::size_t i = 0; i < features.features.size(); ++i) {
        const Feature& feature = features.features[i];
        for (std::size_t path = features.first_path(i); path < feature.path_end; ++path) {
            apart.features.push_back({feature.shape, path + 1, feature.values});
        }
    }
    return apart;
}

std::string text_of_value(const FieldValue& value) {
    if (const auto* const text = std::get_if<std::string>(&value)) {
        return *text;
    }
    if (const auto* const integer = std::get_if<std::int64_t>(&value)) {
        return std::to_string(*integer);
    }
    if (const auto* const real = std::get_if<double>(&value)) {
        return shortest_digits(*real);
    }
    if (const auto* const boolean = std::get_if<bool>(&value)) {
        return *boolean ? "true" : "false";
    }
    return {};
}

} // namespace korvel::kit
