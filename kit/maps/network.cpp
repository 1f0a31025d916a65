#include "kit/maps/network.h"

#include <algorithm>
#include <cstdio>

#include "kit/files/curve_file.h"
#include "kit/files/file_kind.h"

namespace korvel::kit {

Network::Network(const CArray<GridPoint>& points, const CArray<int>& counts)
    : points_(points.begin(), points.end()) {
    ends_.reserve(static_cast<std::size_t>(counts.GetSize()));
    int end = 0;
    for (const int count : counts) {
        end += std::clamp(count, 0, points.GetSize() - end);
        ends_.push_back(end);
    }
    points_.resize(static_cast<std::size_t>(end));
}

Network::Network(const CurveNetwork& curves) : Network(curves.pts, curves.counts) {
    placement_.grid = curves.grid;
    largest_shift_ = curves.largest_shift;
}

void Network::add_curve(std::span<const GridPoint> points) {
    points_.insert(points_.end(), points.begin(), points.end());
    ends_.push_back(point_count());
}

Network Network::read(const std::filesystem::path& file, const GridChoice& choice) {
    return read(TextFile(file), choice);
}

Network Network::read(const TextFile& file, const GridChoice& choice) {
    Network network(
        read_expecting({FileKind::curves}, file, [&] { return read_curves(file, choice); }));
    network.name_ = file.name;
    return network;
}

void Network::write(const std::filesystem::path& file) const {
    write_completely(*this, file);
}

void Network::write(OutputFile& out) const {
    std::fprintf(out.stream(), "%d\n", curve_count());
    for (int i = 0; i < curve_count(); ++i) {
        std::fprintf(out.stream(), "%zu\n", curve(i).size());
        for (const GridPoint& point : curve(i)) {
            const Point2 user = placement_.grid.to_user(point);
            std::fprintf(out.stream(), "%s %s\n", plain_digits(user[0]).c_str(),
                         plain_digits(user[1]).c_str());
        }
    }
}

std::span<const GridPoint> Network::curve(int index) const {
    const int start = index == 0 ? 0 : ends_[index - 1];
    return std::span(points_).subspan(static_cast<std::size_t>(start),
                                      static_cast<std::size_t>(ends_[index] - start));
}

bool Network::is_closed(int index) const {
    const std::span<const GridPoint> points = curve(index);
    return points.size() > 2 && is_same(points.front(), points.back());
}

Rectangle Network::bounds() const {
    Rectangle box;
    for (const GridPoint& point : points_) {
        const Point2 user = placement_.grid.to_user(point);
        box.take_in(user[0], user[1]);
    }
    return box;
}

} // namespace korvel::kit
