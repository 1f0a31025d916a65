#include "kit/files/geojson_coordinates.h"

#include <algorithm>
#include <vector>

namespace korvel::kit {

void GeoJsonPlace::fail(const std::string& message, std::string_view value) const {
    input.fail((feature >= 0 ? "feature " + std::to_string(feature) + ": " : "") + message, value);
}

void GeoJsonCoordinates::start(CoordinateDepth depth) {
    first_path_ = out_.paths.size();
    depth_ = depth;
    level_ = 0;
    deepest_empty_ = 0;
    numbers_ = 0;
    starts_polygon_ = true;
    start_array();
}

void GeoJsonCoordinates::start_array() {
    if (numbers_ > 0) {
        place_.fail("an array among the numbers of a position");
    }
    ++level_;
    if (depth_ != 0 && level_ > depth_) {
        fail_depth(depth_, level_);
    }
    is_empty_ = true;
}

void GeoJsonCoordinates::number(double value) {
    if (depth_ == 0) {
        depth_ = level_;
    }
    if (level_ != depth_) {
        fail_depth(depth_, level_);
    }
    if (numbers_ < position_.size()) {
        position_[numbers_] = value + 0.0; // no minus before a 0
    }
    ++numbers_;
    is_empty_ = false;
}

bool GeoJsonCoordinates::end_array() {
    if (is_empty_) {
        deepest_empty_ = std::max(deepest_empty_, level_);
    } else if (level_ == depth_) {
        end_position();
    }
    is_empty_ = false;
    --level_;
    if (level_ + 1 == depth_ - 1 || (level_ == 0 && depth_ == 1)) {
        end_path();
    } else if (level_ + 2 == depth_ - 1) {
        starts_polygon_ = true;
    }
    return level_ == 0;
}

void GeoJsonCoordinates::check(CoordinateDepth depth) const {
    if (depth_ != 0 && depth_ != depth) {
        fail_depth(depth, depth_);
    }
    if (deepest_empty_ > depth) {
        fail_depth(depth, deepest_empty_);
    }
}

void GeoJsonCoordinates::shape(Shape shape) {
    if (shape == Shape::polygons) {
        close_rings();
        return;
    }
    for (std::size_t i = first_path_; i < out_.paths.size(); ++i) {
        out_.paths[i].starts_polygon = true;
    }
}

void GeoJsonCoordinates::fail_depth(CoordinateDepth expected, CoordinateDepth found) const {
    place_.fail("a position nested " + std::to_string(found) + " deep in the coordinates, where " +
                std::to_string(expected) + " is expected");
}

void GeoJsonCoordinates::end_position() {
    if (numbers_ < position_.size()) {
        place_.fail("a position of one number", std::to_string(numbers_));
    }
    if (numbers_ > position_.size()) {
        ++out_.heights;
    }
    out_.points.push_back(position_);
    numbers_ = 0;
}

void GeoJsonCoordinates::end_path() {
    const std::size_t begin = out_.paths.empty() ? 0 : out_.paths.back().end;
    if (out_.points.size() > begin) {
        out_.paths.push_back({out_.points.size(), starts_polygon_});
        starts_polygon_ = false;
    }
}

void GeoJsonCoordinates::close_rings() {
    const auto is_open = [&](std::size_t path) {
        const std::span<const Point2> ring = out_.path(path);
        return ring.front() != ring.back();
    };
    std::size_t path = first_path_;
    while (path < out_.paths.size() && !is_open(path)) {
        ++path;
    }
    if (path == out_.paths.size()) {
        return;
    }
    const std::size_t begin = path == 0 ? 0 : out_.paths[path - 1].end;
    const std::vector<Point2> points(out_.points.begin() + static_cast<long>(begin),
                                     out_.points.end());
    out_.points.resize(begin);
    auto from = points.begin();
    for (; path < out_.paths.size(); ++path) {
        const auto to = points.begin() + static_cast<long>(out_.paths[path].end - begin);
        const Point2 first = *from;
        const bool closes = first != *(to - 1);
        out_.points.insert(out_.points.end(), from, to);
        if (closes) {
            out_.points.push_back(first);
        }
        out_.paths[path].end = out_.points.size();
        from = to;
    }
}

} // namespace korvel::kit
