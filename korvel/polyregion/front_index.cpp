#include "korvel/polyregion/front_index.h"

namespace korvel {
namespace {

/// Sides whose directions have a determinant above 1e-6 cross where the formula says, to this part
/// of the region's extent; those that are closer to parallel may be reported to cross anywhere.
constexpr double crossing_error = 1e-8;

/// Buckets of lines are this wide, in slope and, as a part of the extent, in offset: more than
/// nearly parallel sides that the formula could report as crossing differ by.
constexpr double line_bucket = 1e-5;

bool runs_steeply(Direction direction) {
    return std::fabs(direction.uy) > std::fabs(direction.ux);
}

/// The direction or its opposite, so that both senses compare equal.
Direction canonical(Direction direction) {
    const bool flip = direction.ux < 0 || (direction.ux == 0 && direction.uy < 0);
    return flip ? Direction{-direction.ux, -direction.uy, direction.len} : direction;
}

} // namespace

CellGrid::CellGrid(const std::vector<PlanePoint>& pts) {
    PlanePoint high = low_ = pts.front();
    for (const PlanePoint& p : pts) {
        low_ = {std::min(low_.x, p.x), std::min(low_.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    width_ = high.x - low_.x;
    height_ = high.y - low_.y;
    extent_ = std::max(width_, height_);
    rounding_ = 1e-9 * extent_;
    const auto count = static_cast<double>(pts.size());
    // About one point to a cell, and never more cells along an axis than points.
    cell_size_ = std::max(std::sqrt(width_ * height_ / count), extent_ / count);
    columns_ = static_cast<int>(width_ / cell_size_) + 1;
    rows_ = static_cast<int>(height_ / cell_size_) + 1;
}

PointIndex::PointIndex(const CellGrid& grid, const std::vector<PlanePoint>& pts)
    : starts_(grid.cells() + 1, 0), points_(pts.size()) {
    for (const PlanePoint& p : pts) {
        ++starts_[grid.cell_of(p) + 1];
    }
    for (std::size_t cell = 1; cell < starts_.size(); ++cell) {
        starts_[cell] += starts_[cell - 1];
    }
    std::vector<std::size_t> next(starts_.begin(), starts_.end() - 1);
    for (std::size_t i = 0; i < pts.size(); ++i) {
        points_[next[grid.cell_of(pts[i])]++] = static_cast<int>(i);
    }
}

SideIndex::SideIndex(const CellGrid& grid, const std::vector<PlanePoint>& pts)
    : grid_(grid), pts_(pts), near_(crossing_error * grid.extent()),
      boundary_at_(static_cast<int>(pts.size())), front_at_(static_cast<int>(pts.size())),
      first_in_cell_(grid.cells(), -1), buckets_(static_cast<int>(pts.size())),
      first_end_(pts.size(), -1) {}

void SideIndex::add(int p0, int p1, Direction direction, Kind kind) {
    const int side = static_cast<int>(sides_.size());
    FirstIndex& listed = kind == Kind::boundary ? boundary_at_ : front_at_;
    listed.find_or_add(side_key(p0, p1), side);
    sides_.push_back({p0, p1, direction, kind});
    for (const auto& [pt, other] : {std::pair{p0, p1}, std::pair{p1, p0}}) {
        int& first = first_end_[static_cast<std::size_t>(pt)];
        ends_.push_back({other, first});
        first = static_cast<int>(ends_.size()) - 1;
    }
    // A side without a direction crosses nothing.
    if (std::isfinite(direction.ux) && std::isfinite(direction.uy)) {
        add_to_cells(side);
        add_to_lines(side);
    }
}

bool SideIndex::has(int p0, int p1, Kind kind) const {
    const FirstIndex& listed = kind == Kind::boundary ? boundary_at_ : front_at_;
    return listed.find(side_key(p0, p1)) >= 0;
}

int SideIndex::find_crossed(int p0, int p1) const {
    const Tested tested = tested_side(p0, p1);
    if (!std::isfinite(tested.direction.ux) || !std::isfinite(tested.direction.uy)) {
        return -1;
    }
    int crossed = -1;
    const auto any_of_links = [&](const std::vector<Link>& links, int first) {
        for (int link = first; link >= 0; link = links[static_cast<std::size_t>(link)].next) {
            if (crosses(tested, links[static_cast<std::size_t>(link)].side)) {
                crossed = links[static_cast<std::size_t>(link)].side;
                return true;
            }
        }
        return false;
    };
    const PlanePoint end = pts_[static_cast<std::size_t>(p1)];
    if (grid_.any_cell_in_band(tested.start, end, near_, 0, [&](std::size_t cell) {
            return any_of_links(cell_links_, first_in_cell_[cell]);
        })) {
        return crossed;
    }

    const bool steep = runs_steeply(tested.direction);
    const Direction sense = canonical(tested.direction);
    const LinePlace place = place_of_line(tested.start, tested.direction, steep);
    for (int slope = place.slope - 1; slope <= place.slope + 1; ++slope) {
        for (int offset = place.offset - 1; offset <= place.offset + 1; ++offset) {
            for (int b = buckets_.find(line_key({slope, offset}, steep)); b >= 0;
                 b = bundles_[static_cast<std::size_t>(b)].next_bundle) {
                const Bundle& bundle = bundles_[static_cast<std::size_t>(b)];
                const bool exactly_parallel = bundle.ux == sense.ux && bundle.uy == sense.uy;
                if (!exactly_parallel && any_of_links(bundle_links_, bundle.first)) {
                    return crossed;
                }
            }
        }
    }
    return -1;
}

bool SideIndex::is_crossed(int p0, int p1, int side) const {
    return crosses(tested_side(p0, p1), side);
}

SideIndex::Tested SideIndex::tested_side(int p0, int p1) const {
    const PlanePoint start = pts_[static_cast<std::size_t>(p0)];
    const PlanePoint end = pts_[static_cast<std::size_t>(p1)];
    return {p0,
            p1,
            start,
            direction_between(start, end),
            has(p0, p1, Kind::boundary),
            has(p0, p1, Kind::front)};
}

bool SideIndex::crosses(const Tested& tested, int side_number) const {
    const Side& side = sides_[static_cast<std::size_t>(side_number)];
    if (side.kind == Kind::boundary ? tested.on_boundary : tested.on_front) {
        return false;
    }
    if (side.p0 == tested.p0 || side.p0 == tested.p1 || side.p1 == tested.p0 ||
        side.p1 == tested.p1) {
        return false;
    }
    return meet_sides(pts_[static_cast<std::size_t>(side.p0)], side.direction, tested.start,
                      tested.direction)
        .crosses;
}

void SideIndex::add_to_cells(int side) {
    const Side& added = sides_[static_cast<std::size_t>(side)];
    grid_.any_cell_in_band(pts_[static_cast<std::size_t>(added.p0)],
                           pts_[static_cast<std::size_t>(added.p1)], near_, 0,
                           [&](std::size_t cell) {
                               cell_links_.push_back({side, first_in_cell_[cell]});
                               first_in_cell_[cell] = static_cast<int>(cell_links_.size()) - 1;
                               return false;
                           });
}

void SideIndex::add_to_lines(int side) {
    const Side& added = sides_[static_cast<std::size_t>(side)];
    const Direction sense = canonical(added.direction);
    // Lines near the diagonals stand among the steep ones and among the others.
    const double ratio = std::min(std::fabs(sense.ux), std::fabs(sense.uy)) /
                         std::max(std::fabs(sense.ux), std::fabs(sense.uy));
    for (const bool steep : {false, true}) {
        if (steep != runs_steeply(sense) && ratio < 1 - 2 * line_bucket) {
            continue;
        }
        const LinePlace place =
            place_of_line(pts_[static_cast<std::size_t>(added.p0)], added.direction, steep);
        const int fresh = static_cast<int>(bundles_.size());
        const int head = buckets_.find_or_add(line_key(place, steep), fresh);
        int bundle = head;
        while (bundle != fresh && bundle >= 0 &&
               (bundles_[static_cast<std::size_t>(bundle)].ux != sense.ux ||
                bundles_[static_cast<std::size_t>(bundle)].uy != sense.uy)) {
            bundle = bundles_[static_cast<std::size_t>(bundle)].next_bundle;
        }
        if (bundle == fresh || bundle < 0) {
            int behind_head = -1;
            if (head != fresh) {
                behind_head =
                    std::exchange(bundles_[static_cast<std::size_t>(head)].next_bundle, fresh);
            }
            bundles_.push_back({sense.ux, sense.uy, -1, behind_head});
            bundle = fresh;
        }
        int& first = bundles_[static_cast<std::size_t>(bundle)].first;
        bundle_links_.push_back({side, first});
        first = static_cast<int>(bundle_links_.size()) - 1;
    }
}

SideIndex::LinePlace SideIndex::place_of_line(PlanePoint on_line, Direction direction,
                                              bool steep) const {
    const PlanePoint centre = grid_.centre();
    const double dx = on_line.x - centre.x;
    const double dy = on_line.y - centre.y;
    const double slope = steep ? direction.ux / direction.uy : direction.uy / direction.ux;
    const double offset = steep ? dx - dy * slope : dy - dx * slope;
    return {static_cast<int>(std::floor(slope / line_bucket)),
            static_cast<int>(std::floor(offset / (line_bucket * grid_.extent())))};
}

std::uint64_t SideIndex::line_key(LinePlace place, bool steep) {
    constexpr int apart = 1 << 24; // steep lines have keys of their own
    return pair_key(place.slope + (steep ? apart : 0), place.offset);
}

} // namespace korvel
