#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "kit/base/points.h"

namespace korvel::kit {

/// The value of an attribute; nothing where a feature has none.
using FieldValue = std::variant<std::monostate, bool, std::int64_t, double, std::string>;

/// An attribute that features have.
struct Field {
    enum class Type { text, integer, real, boolean };
    std::string name; ///< UTF-8
    Type type = Type::text;
};

/// What the points of a feature are.
enum class Shape : std::uint8_t { none, points, lines, polygons };

/// A line, a ring, or the points of a feature.
struct FeaturePath {
    std::size_t end = 0; ///< after its last point in `Features::points`
    bool starts_polygon =
        true; ///< of polygons: an outer ring, the others are holes of the one before
};

struct Feature {
    Shape shape = Shape::none;
    std::size_t path_end = 0;            ///< after its last path in `Features::paths`
    std::vector<FieldValue> values = {}; ///< of the fields in their order; those missing have none
};

/// A layer of features as files of maps contain them, in double precision: points, lines or
/// polygons with attributes. Features are kept in the order of the file; one of several shapes
/// becomes several with the same attributes. Rings are closed: their last point is their first.
struct Features {
    std::string name;      ///< of the layer
    std::string reference; ///< see `Placement`
    std::vector<Field> fields;
    std::vector<Feature> features;
    std::vector<FeaturePath> paths;
    std::vector<Point2> points;

    /// The names of the layers of the file that this one was read from, as far as GDAL read it.
    std::vector<std::string> layers;

    /// How many points had a height, or another further coordinate, which is not kept.
    std::size_t heights = 0;

    /// The polygons are triangles, those of a feature one surface: written as such where a format
    /// has them, as a GeoPackage does.
    bool is_tin = false;

    /// The paths of a feature, as indices into `paths`: from `first_path` up to its `path_end`.
    std::size_t first_path(std::size_t feature) const {
        return feature == 0 ? 0 : features[feature - 1].path_end;
    }

    /// The points of a path.
    std::span<const Point2> path(std::size_t index) const {
        const std::size_t first = index == 0 ? 0 : paths[index - 1].end;
        return {points.data() + first, paths[index].end - first};
    }

    /// The value of a field of a feature; nothing if there is none.
    const FieldValue& value(std::size_t feature, std::size_t field) const {
        static const FieldValue none;
        const std::vector<FieldValue>& values = features[feature].values;
        return field < values.size() ? values[field] : none;
    }

    /// The index of a field, or the number of fields if there is none of that name.
    std::size_t field(const std::string& name_of_field) const {
        std::size_t index = 0;
        while (index < fields.size() && fields[index].name != name_of_field) {
            ++index;
        }
        return index;
    }
};

/// Features with surfaces of triangles as features of one triangle each, for formats without such
/// surfaces.
Features triangles_apart(const Features& features);

/// A value as text: empty for nothing, numbers in the shortest digits that read back as the same.
std::string text_of_value(const FieldValue& value);

} // namespace korvel::kit
