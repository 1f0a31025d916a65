#include "kit/maps/map.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "kit/base/areas.h"
#include "kit/base/error.h"
#include "kit/files/file_kind.h"
#include "kit/files/placement_line.h"
#include "kit/files/region_file.h"
#include "kit/maps/inner_point.h"
#include "kit/maps/region_colours.h"
#include "kit/maps/region_sets.h"
#include "kit/maps/ring_rule.h"

namespace korvel::kit {
namespace {

void check_indices(const CCPloy2DRg& set);
CCPloy2DRg with_sides(const CCPloy2DRg& set);

/// For queries of the exact class that are not `const` but change nothing.
CCPloy2DRg& queried(const CCPloy2DRg& set) {
    return const_cast<CCPloy2DRg&>(set); // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

} // namespace

Map::Map(std::unique_ptr<CCPloy2DRg> regions, Placement placement)
    : regions_(std::move(regions)), placement_(std::move(placement)) {
    check_indices(*regions_);
    is_on_grid_ = are_lattice_points(regions_->pt_list);
}

Map::Map(const CCPloy2DRg& regions, Placement placement)
    : Map(std::make_unique<CCPloy2DRg>(regions), std::move(placement)) {}

Map Map::kept(std::span<const int> regions) const {
    std::vector<int> numbers(regions.begin(), regions.end());
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    if (!numbers.empty() && (numbers.front() < 0 || numbers.back() >= size())) {
        throw input_error("the map has no region " +
                          std::to_string(numbers.front() < 0 ? numbers.front() : numbers.back()));
    }
    auto set = std::make_unique<CCPloy2DRg>();
    copy_regions(*regions_, *set);
    keep_regions(*set, numbers);
    Map map(std::move(set), placement_);
    map.fields_ = fields_;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const Region region = (*this)[numbers[i]];
        map.set_name(static_cast<int>(i), region.name());
        map.set_colour(static_cast<int>(i), region.colour());
        if (const auto slot = static_cast<std::size_t>(numbers[i]); slot < values_.size()) {
            map.set_values(static_cast<int>(i), values_[slot]);
        }
        map.numbers_.push_back(region.number());
    }
    return map;
}

Map Map::read(const std::filesystem::path& file, const Context& context) {
    return read(TextFile(file), context);
}

Map Map::read(const TextFile& file, const Context& context) {
    auto set = std::make_unique<CCPloy2DRg>();
    const auto note =
        read_expecting({FileKind::regions}, file, [&] { return read_regions(file, *set); });
    if (note) {
        context.warn(*note);
    }
    return Map(std::move(set), read_placement(file));
}

void Map::write(const std::filesystem::path& file) const {
    write_completely(*this, file);
}

void Map::write(OutputFile& out) const {
    queried(*regions_).writepolyrg(out.stream());
    std::fputs(placement_line(placement_).c_str(), out.stream());
}

std::optional<int> Map::region_at(const Point2& point) const {
    return first_region([&](const CCPloy2DRg::PyToRg& region) {
        return encloses(region.rings[0], point) &&
               std::none_of(region.rings.begin() + 1, region.rings.end(),
                            [&](int hole) { return encloses(hole, point); });
    });
}

std::optional<int> Map::outline_at(const Point2& point) const {
    return first_region(
        [&](const CCPloy2DRg::PyToRg& region) { return encloses(region.rings[0], point); });
}

template <class Fits>
std::optional<int> Map::first_region(Fits fits) const {
    for (int i = 0; i < size(); ++i) {
        const CCPloy2DRg::PyToRg& region = regions_->region_list[i];
        if (!region.rings.IsEmpty() && fits(region)) {
            return i;
        }
    }
    return std::nullopt;
}

bool Map::encloses(int ring, const Point2& point) const {
    const auto corner = [&](int k) {
        const VERT2D& at = regions_->pt_list[k];
        const Point2 user = placement_.grid.to_user(Point2{at.x, at.y});
        return PlanePoint{user[0], user[1]};
    };
    const CArray<int>& corners = regions_->ring_list[ring].pts;
    bool is_inside = false;
    for (int k = 0; k < corners.GetSize(); ++k) {
        const int next = k + 1 < corners.GetSize() ? k + 1 : 0;
        is_inside ^= is_right_of(point, corner(corners[k]), corner(corners[next]));
    }
    return is_inside;
}

std::vector<std::vector<int>> Map::neighbours() const {
    return neighbours_of_regions(with_sides(*regions_));
}

std::vector<int> Map::neighbours(int region) const {
    return std::move(neighbours()[region]);
}

std::vector<int> Map::slivers(double share) const {
    std::vector<int> slivers;
    for (const Region region : *this) {
        if (region.area() < share * region.perimeter() * placement_.grid.step()) {
            slivers.push_back(region.index());
        }
    }
    return slivers;
}

Rectangle Map::bounds() const {
    return in_user_units(box_of_regions(*regions_), placement_.grid);
}

double Map::area() const {
    return std::accumulate(begin(), end(), 0.0,
                           [](double sum, const Region& region) { return sum + region.area(); });
}

void Map::set_name(int region, std::string_view name) {
    const auto slot = static_cast<std::size_t>(region);
    if (!name.empty() || slot < names_.size()) {
        names_.resize(std::max(names_.size(), slot + 1));
        names_[slot] = name;
    }
}

void Map::set_colour(int region, Colour colour) {
    CCPloy2DRg::PyToRg& record = regions_->region_list[region];
    record.red = colour.red;
    record.green = colour.green;
    record.blue = colour.blue;
}

void Map::set_fields(std::vector<Field> fields) {
    fields_ = std::move(fields);
    values_.clear();
}

void Map::set_values(int region, std::vector<FieldValue> values) {
    const auto slot = static_cast<std::size_t>(region);
    values_.resize(std::max(values_.size(), slot + 1));
    values_[slot] = std::move(values);
}

void Map::colour_distinctly() {
    CCPloy2DRg coloured = with_sides(*regions_);
    colour_regions(coloured);
    for (int i = 0; i < size(); ++i) {
        const CCPloy2DRg::PyToRg& region = coloured.region_list[i];
        set_colour(i, {region.red, region.green, region.blue});
    }
}

std::vector<double> Map::distinct_hues() const {
    return hues_of_regions(with_sides(*regions_));
}

std::vector<Point2> Map::points() const {
    std::vector<Point2> points;
    points.reserve(static_cast<std::size_t>(point_count()));
    for (const VERT2D& point : regions_->pt_list) {
        points.push_back(placement_.grid.to_user(Point2{point.x, point.y}));
    }
    return points;
}

void Map::move_points(std::span<const Point2> points, Placement placement) {
    placement_ = std::move(placement);
    for (int i = 0; i < point_count(); ++i) {
        const Point2& to = points[static_cast<std::size_t>(i)];
        const Point2 at =
            placement_.grid.is_identity() ? to : to_point(placement_.grid.nearest(to));
        regions_->pt_list[i].x = at[0];
        regions_->pt_list[i].y = at[1];
    }
    is_on_grid_ = are_lattice_points(regions_->pt_list);
}

std::unique_ptr<CCPloy2DRg> Map::take_regions() {
    std::unique_ptr<CCPloy2DRg> regions = regions_.release();
    *this = Map();
    return regions;
}

int Region::number() const {
    return map_->numbers_.empty() ? index_ : map_->numbers_[static_cast<std::size_t>(index_)];
}

IndexedRange<Region::Corner> Region::ring(int which) const {
    const CCPloy2DRg& set = *map_->regions_;
    const CArray<int>& corners = set.ring_list[record().rings[which]].pts;
    return {corners.GetSize(), {&set, &map_->placement_.grid, &corners}};
}

int Region::point_count() const {
    int count = 0;
    for (int i = 0; i < ring_count(); ++i) {
        count += ring(i).size();
    }
    return count;
}

double Region::area() const {
    return map_->placement_.grid.area(region_area(*map_->regions_, record(), map_->is_on_grid_));
}

std::optional<Point2> Region::inner_point() const {
    const std::optional<Point2> steps = kit::inner_point(map_->regions(), index_);
    return steps ? std::optional(map_->placement().grid.to_user(*steps)) : std::nullopt;
}

double Region::perimeter() const {
    double length = 0;
    for (int i = 0; i < ring_count(); ++i) {
        const IndexedRange<Corner> corners = ring(i);
        Point2 last = corners.empty() ? Point2() : corners[corners.size() - 1];
        for (const Point2& corner : corners) {
            length += std::hypot(corner[0] - last[0], corner[1] - last[1]);
            last = corner;
        }
    }
    return length;
}

double Region::ring_area(int which) const {
    const CCPloy2DRg& set = *map_->regions_;
    const RING& ring = set.ring_list[record().rings[which]];
    const double doubled = map_->is_on_grid_
                               ? static_cast<double>(twice_area<WideInteger>(set.pt_list, ring))
                               : twice_area<double>(set.pt_list, ring);
    return map_->placement_.grid.area(std::abs(doubled) / 2);
}

Rectangle Region::bounds() const {
    Rectangle box;
    take_in_region(box, *map_->regions_, record());
    return in_user_units(box, map_->placement_.grid);
}

Colour Region::colour() const {
    return {record().red, record().green, record().blue};
}

const std::string& Region::name() const {
    static const std::string none;
    const auto slot = static_cast<std::size_t>(index_);
    return slot < map_->names_.size() ? map_->names_[slot] : none;
}

const FieldValue& Region::value(std::size_t field) const {
    static const FieldValue none;
    const auto slot = static_cast<std::size_t>(index_);
    if (slot >= map_->values_.size() || field >= map_->values_[slot].size()) {
        return none;
    }
    return map_->values_[slot][field];
}

const CCPloy2DRg::PyToRg& Region::record() const {
    return map_->regions_->region_list[index_];
}

namespace {

void check_indices(const CCPloy2DRg& set) {
    const auto check = [](const CArray<int>& indices, int size, const char* what) {
        for (const int index : indices) {
            if (index < 0 || index >= size) {
                throw input_error("the regions refer to " + std::string(what) + " " +
                                  std::to_string(index) + ", there are " + std::to_string(size));
            }
        }
    };
    for (const RING& ring : set.ring_list) {
        check(ring.pts, set.pt_list.GetSize(), "point");
    }
    for (const CCPloy2DRg::PyToRg& region : set.region_list) {
        check(region.rings, set.ring_list.GetSize(), "ring");
    }
}

CCPloy2DRg with_sides(const CCPloy2DRg& set) {
    CCPloy2DRg copy;
    copy_regions(set, copy);
    copy.creat_top_rel();
    return copy;
}

} // namespace
} // namespace korvel::kit
