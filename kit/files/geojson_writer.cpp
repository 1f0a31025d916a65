#include "kit/files/geojson_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kit/base/error.h"
#include "kit/files/geojson_types.h"
#include "kit/files/json_text.h"

namespace korvel::kit {
namespace {

class GeoJsonWriter {
public:
    GeoJsonWriter(const Features& features, OutputFile& out, int decimals);
    void write();

private:
    void put_head();
    void put_feature(std::size_t index);
    void put_properties(std::size_t feature);
    void put_geometry(std::size_t feature);
    void put_points(std::size_t path, std::size_t path_end, bool is_single);
    void put_lines(std::size_t path, std::size_t path_end, bool is_single);
    void put_polygons(std::size_t path, std::size_t path_end, bool is_single);
    void put_path(std::span<const Point2> path, bool is_reversed);
    void put_point(const Point2& point);
    void put_coordinate(double value);
    bool is_single(std::size_t feature) const;
    void flush(std::size_t least);

    const Features& features_;
    OutputFile& out_;
    int decimals_;
    std::vector<std::string> names_; // of the fields as members
    std::string text_;               // not written yet
};

double turn(std::span<const Point2> ring);
std::string urn_of(const std::string& reference);

} // namespace

void write_geojson(const Features& features, OutputFile& out, int decimals) {
    GeoJsonWriter(features, out, decimals).write();
}

namespace {

constexpr std::size_t block = 1U << 16U;

GeoJsonWriter::GeoJsonWriter(const Features& features, OutputFile& out, int decimals)
    : features_(features), out_(out), decimals_(std::min(decimals, 17)) {
    for (const Field& field : features.fields) {
        append_json_string(names_.emplace_back(), field.name);
        names_.back() += ": ";
    }
}

void GeoJsonWriter::write() {
    put_head();
    for (std::size_t i = 0; i < features_.features.size(); ++i) {
        text_ += i == 0 ? "\n" : ",\n";
        put_feature(i);
        flush(block);
    }
    text_ += "\n]\n}\n";
    flush(0);
}

void GeoJsonWriter::put_head() {
    text_ += "{\n\"type\": \"FeatureCollection\",\n";
    if (!features_.name.empty()) {
        text_ += "\"name\": ";
        append_json_string(text_, features_.name);
        text_ += ",\n";
    }
    if (const std::string urn = urn_of(features_.reference); !urn.empty()) {
        text_ += R"("crs": {"type": "name", "properties": {"name": )";
        append_json_string(text_, urn);
        text_ += "}},\n";
    }
    text_ += "\"features\": [";
}

void GeoJsonWriter::put_feature(std::size_t index) {
    text_ += R"({"type": "Feature", "properties": )";
    put_properties(index);
    text_ += ", \"geometry\": ";
    put_geometry(index);
    text_ += '}';
}

void GeoJsonWriter::put_properties(std::size_t feature) {
    text_ += '{';
    for (std::size_t field = 0; field < names_.size(); ++field) {
        text_ += field == 0 ? "" : ", ";
        text_ += names_[field];
        append_json_value(text_, features_.value(feature, field));
    }
    text_ += '}';
}

void GeoJsonWriter::put_geometry(std::size_t feature) {
    const Shape shape = features_.features[feature].shape;
    if (shape == Shape::none) {
        text_ += "null";
        return;
    }
    const std::size_t first = features_.first_path(feature);
    const std::size_t end = features_.features[feature].path_end;
    const bool single = is_single(feature);
    text_ += R"({"type": ")";
    text_ += geojson_type_name(shape, single);
    text_ += R"(", "coordinates": )";
    if (shape == Shape::points) {
        put_points(first, end, single);
    } else if (shape == Shape::lines) {
        put_lines(first, end, single);
    } else {
        put_polygons(first, end, single);
    }
    text_ += '}';
}

void GeoJsonWriter::put_points(std::size_t path, std::size_t path_end, bool is_single) {
    if (is_single) {
        put_point(features_.path(path).front());
        return;
    }
    const char* between = "";
    text_ += '[';
    for (; path < path_end; ++path) {
        for (const Point2& point : features_.path(path)) {
            text_ += between;
            put_point(point);
            between = ", ";
        }
    }
    text_ += ']';
}

void GeoJsonWriter::put_lines(std::size_t path, std::size_t path_end, bool is_single) {
    text_ += is_single ? "" : "[";
    for (std::size_t i = path; i < path_end; ++i) {
        text_ += i == path ? "" : ", ";
        put_path(features_.path(i), false);
    }
    text_ += is_single ? "" : "]";
}

void GeoJsonWriter::put_polygons(std::size_t path, std::size_t path_end, bool is_single) {
    text_ += is_single ? "" : "[";
    for (std::size_t i = path; i < path_end; ++i) {
        const bool is_outer = i == path || features_.paths[i].starts_polygon;
        text_ += i == path ? "[" : is_outer ? "], [" : ", ";
        const std::span<const Point2> ring = features_.path(i);
        put_path(ring, is_outer ? turn(ring) < 0 : turn(ring) > 0);
    }
    text_ += path < path_end ? "]" : "";
    text_ += is_single ? "" : "]";
}

void GeoJsonWriter::put_path(std::span<const Point2> path, bool is_reversed) {
    const char* between = "[";
    for (std::size_t i = 0; i < path.size(); ++i) {
        text_ += between;
        put_point(is_reversed ? path[path.size() - 1 - i] : path[i]);
        between = ", ";
        flush(block);
    }
    text_ += ']';
}

void GeoJsonWriter::put_point(const Point2& point) {
    text_ += '[';
    put_coordinate(point[0]);
    text_ += ", ";
    put_coordinate(point[1]);
    text_ += ']';
}

void GeoJsonWriter::put_coordinate(double value) {
    if (!std::isfinite(value)) {
        throw input_error("a coordinate is not a finite number, and GeoJSON has no others");
    }
    if (decimals_ < 0) {
        append_json_number(text_, value + 0.0); // no minus before a 0
        return;
    }
    std::array<char, 400> digits; // NOLINT(cppcoreguidelines-pro-type-member-init)
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                            std::chars_format::fixed, decimals_);
    std::string_view text(digits.data(), static_cast<std::size_t>(end - digits.data()));
    if (text.find('.') != std::string_view::npos) {
        text = text.substr(0, text.find_last_not_of('0') + 1);
        text = text.substr(0, text.size() - (text.ends_with('.') ? 1 : 0));
    }
    text_ += text == "-0" ? "0" : text;
}

// One point, line or polygon, so that the type is not that of several.
bool GeoJsonWriter::is_single(std::size_t feature) const {
    const std::size_t first = features_.first_path(feature);
    const std::size_t end = features_.features[feature].path_end;
    if (features_.features[feature].shape != Shape::polygons) {
        return end == first + 1 && (features_.features[feature].shape == Shape::lines ||
                                    features_.path(first).size() == 1);
    }
    const auto paths = std::span(features_.paths).subspan(first, end - first);
    return !paths.empty() &&
           std::none_of(paths.begin() + 1, paths.end(),
                        [](const FeaturePath& path) { return path.starts_polygon; });
}

// Writes the text out once it has that many bytes.
void GeoJsonWriter::flush(std::size_t least) {
    if (text_.size() >= least) {
        std::fwrite(text_.data(), 1, text_.size(), out_.stream());
        text_.clear();
    }
}

// Above 0 counter-clockwise, with y upward.
double turn(std::span<const Point2> ring) {
    double area = 0;
    for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
        area += (ring[i][0] - ring[0][0]) * (ring[i + 1][1] - ring[0][1]) -
                (ring[i + 1][0] - ring[0][0]) * (ring[i][1] - ring[0][1]);
    }
    return area;
}

// Empty where GeoJSON cannot name the system, or need not.
std::string urn_of(const std::string& reference) {
    const std::size_t colon = reference.find(':');
    if (reference == "EPSG:4326" || reference == "OGC:CRS84" || colon == std::string::npos ||
        reference.find_first_of(":[{+ ", colon + 1) != std::string::npos) {
        return {};
    }
    return "urn:ogc:def:crs:" + reference.substr(0, colon) + ":" + reference.substr(colon);
}

} // namespace
} // namespace korvel::kit
