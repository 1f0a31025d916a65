#include "kit/solids/walls.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <tuple>
#include <utility>

#include "kit/base/error.h"

namespace korvel::kit {
namespace {

// The points in columns along an axis.
class Columns {
public:
    Columns(const std::vector<Point3>& points, std::size_t axis);

    int column_of(int point) const { return column_of_[rank_of_[point]]; }

    // The position of a point in the order of columns and, within a column, of levels.
    int rank_of(int point) const { return rank_of_[point]; }
    int point_at(int rank) const { return points_[rank]; }
    double level_at(int rank) const { return levels_[rank]; }

private:
    std::vector<int> points_; // by rank
    std::vector<double> levels_;
    std::vector<int> column_of_;
    std::vector<int> rank_of_;
};

// A line from one column to another, by ranks.
struct Rung {
    int a;
    int b;

    friend bool operator==(const Rung&, const Rung&) = default;
    friend bool operator<(const Rung& one, const Rung& other) {
        return one.a != other.a ? one.a < other.a : one.b < other.b;
    }
};

// A triangle between the columns a and b, from one rung to the next above.
struct WallFace {
    int a;
    int b;
    int body;
    Rung below;
    Rung above;
    int face;

    auto place() const { return std::tie(a, b, body, below, above, face); }
    bool is_between_columns_of(const WallFace& other) const { return a == other.a && b == other.b; }
};

using Step = std::pair<Rung, Rung>;

// Faces of one body that follow one another upwards.
struct Wall {
    std::span<const WallFace> faces;

    // As many triangles as there are steps from one vertex to the next on the two columns.
    std::int64_t steps() const {
        return std::int64_t{faces.back().above.a} - faces.front().below.a + faces.back().above.b -
               faces.front().below.b;
    }
    bool takes_in_all() const { return steps() == static_cast<std::int64_t>(faces.size()); }
};

class WallMatcher {
public:
    WallMatcher(Soup& soup, std::size_t axis) : soup_(soup), columns_(soup.points, axis) {}

    // Whether anything has changed.
    bool run(MatchedWalls& counts);

private:
    void find_faces();
    std::vector<Wall> walls_between(std::span<const WallFace> faces) const;
    bool match(const std::vector<Wall>& walls) const;
    std::vector<Step> steps_of(const Wall& wall) const;
    void rebuild(const Wall& wall, MatchedWalls& counts);
    void replace_faces();

    Soup& soup_;
    Columns columns_;
    std::vector<WallFace> faces_;
    std::vector<std::pair<int, int>> removed_; // body and face
    std::vector<std::pair<int, int>> added_;
};

bool are_all_triangles(const FaceList& faces);

} // namespace

MatchedWalls match_walls(Soup& soup, const Context& context) {
    MatchedWalls counts;
    if (!are_all_triangles(soup.faces)) {
        return counts;
    }
    constexpr std::array<std::size_t, 3> axes = {2, 1, 0};
    constexpr int most_passes = 12; // for walls that would turn to and fro
    int passes_left = 3; // the last pass that changes something is followed by two others
    for (int pass = 0; pass < most_passes && passes_left > 0; ++pass) {
        context.stop_if_requested("matching walls");
        const bool is_changed = WallMatcher(soup, axes[pass % 3]).run(counts);
        passes_left = is_changed ? 2 : passes_left - 1;
    }
    return counts;
}

namespace {

bool WallMatcher::run(MatchedWalls& counts) {
    find_faces();
    for (auto first = faces_.begin(); first != faces_.end();) {
        const auto end = std::find_if(first, faces_.end(), [&](const WallFace& face) {
            return !face.is_between_columns_of(*first);
        });
        const std::vector<Wall> walls = walls_between({first, end});
        if (!match(walls)) {
            for (const Wall& wall : walls) {
                rebuild(wall, counts);
            }
        }
        first = end;
    }
    replace_faces();
    return !added_.empty();
}

void WallMatcher::find_faces() {
    for (int body = 0; body < static_cast<int>(soup_.bodies.size()); ++body) {
        for (const int face : soup_.bodies[body]) {
            std::array<int, 3> ranks;
            std::transform(soup_.faces[face].begin(), soup_.faces[face].end(), ranks.begin(),
                           [&](int point) { return columns_.rank_of(point); });
            std::sort(ranks.begin(), ranks.end());
            const auto column = [&](int k) {
                return columns_.column_of(columns_.point_at(ranks[k]));
            };
            if (column(0) == column(2)) {
                continue; // without area
            }
            if (column(0) == column(1)) {
                faces_.push_back(
                    {column(0), column(2), body, {ranks[0], ranks[2]}, {ranks[1], ranks[2]}, face});
            } else if (column(1) == column(2)) {
                faces_.push_back(
                    {column(0), column(2), body, {ranks[0], ranks[1]}, {ranks[0], ranks[2]}, face});
            }
        }
    }
    std::sort(faces_.begin(), faces_.end(),
              [](const WallFace& a, const WallFace& b) { return a.place() < b.place(); });
    std::int64_t steps = 0;
    for (const Wall& wall : walls_between(faces_)) {
        steps += wall.steps();
    }
    const std::int64_t most = 16 * static_cast<std::int64_t>(soup_.faces.size()) + 1'000'000;
    if (steps > most) {
        throw input_error("the walls of the bodies would be split into " + std::to_string(steps) +
                          " faces: too many vertices are above one another");
    }
}

// Where faces of one body overlap, each may be a wall of its own.
std::vector<Wall> WallMatcher::walls_between(std::span<const WallFace> faces) const {
    std::vector<Wall> walls;
    for (std::size_t first = 0; first < faces.size();) {
        std::size_t end = first + 1;
        while (end < faces.size() && faces[end].is_between_columns_of(faces[first]) &&
               faces[end].body == faces[first].body && faces[end].below == faces[end - 1].above) {
            ++end;
        }
        walls.push_back({faces.subspan(first, end - first)});
        first = end;
    }
    return walls;
}

// Whether walls between the same columns have all faces in common that they can have.
bool WallMatcher::match(const std::vector<Wall>& walls) const {
    if (!std::all_of(walls.begin(), walls.end(),
                     [](const Wall& wall) { return wall.takes_in_all(); })) {
        return false;
    }
    if (walls.size() == 1) {
        return true;
    }
    std::vector<Step> present;
    std::vector<Step> possible;
    for (const Wall& wall : walls) {
        for (const WallFace& face : wall.faces) {
            present.emplace_back(face.below, face.above);
        }
        const std::vector<Step> steps = steps_of(wall);
        possible.insert(possible.end(), steps.begin(), steps.end());
    }
    const auto in_common = [](std::vector<Step>& steps) {
        std::sort(steps.begin(), steps.end());
        return steps.end() - std::unique(steps.begin(), steps.end());
    };
    return in_common(present) >= in_common(possible);
}

// Where both columns have a vertex at a level there is a rung, so that walls of different heights
// agree in between.
std::vector<Step> WallMatcher::steps_of(const Wall& wall) const {
    std::vector<Step> steps;
    const Rung end = wall.faces.back().above;
    for (Rung rung = wall.faces.front().below; rung != end;) {
        const bool is_a_next =
            rung.a < end.a &&
            (rung.b == end.b || columns_.level_at(rung.a + 1) <= columns_.level_at(rung.b + 1));
        const Rung next = is_a_next ? Rung{rung.a + 1, rung.b} : Rung{rung.a, rung.b + 1};
        steps.emplace_back(rung, next);
        rung = next;
    }
    return steps;
}

void WallMatcher::rebuild(const Wall& wall, MatchedWalls& counts) {
    const std::vector<Step> steps = steps_of(wall);
    if (std::equal(steps.begin(), steps.end(), wall.faces.begin(), wall.faces.end(),
                   [](const Step& step, const WallFace& face) {
                       return step == Step(face.below, face.above);
                   })) {
        return;
    }
    ++(wall.takes_in_all() ? counts.turned : counts.split);
    const int body = wall.faces.front().body;
    for (const WallFace& face : wall.faces) {
        removed_.emplace_back(body, face.face);
    }
    for (const auto& [below, above] : steps) {
        const int third = above.a != below.a ? above.a : above.b;
        const std::array<int, 3> corners = {columns_.point_at(below.a), columns_.point_at(below.b),
                                            columns_.point_at(third)};
        added_.emplace_back(body, soup_.faces.add(corners));
    }
}

void WallMatcher::replace_faces() {
    std::sort(removed_.begin(), removed_.end());
    for (auto first = removed_.begin(); first != removed_.end();) {
        const int body = first->first;
        const auto end = std::find_if(first, removed_.end(),
                                      [=](const auto& entry) { return entry.first != body; });
        std::erase_if(soup_.bodies[body], [&](int face) {
            return std::binary_search(first, end, std::pair(body, face));
        });
        first = end;
    }
    for (const auto& [body, face] : added_) {
        soup_.bodies[body].push_back(face);
    }
}

Columns::Columns(const std::vector<Point3>& points, std::size_t axis)
    : points_(points.size()), levels_(points.size()), column_of_(points.size()),
      rank_of_(points.size()) {
    struct Place {
        double u;
        double v;
        double level;
        int point;
    };
    const std::size_t u = axis == 0 ? 1 : 0;
    const std::size_t v = axis == 2 ? 1 : 2;
    std::vector<Place> places;
    places.reserve(points.size());
    for (const Point3& point : points) {
        places.push_back({point[u], point[v], point[axis], static_cast<int>(places.size())});
    }
    std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
        return std::tie(a.u, a.v, a.level) < std::tie(b.u, b.v, b.level);
    });
    int column = 0;
    for (std::size_t rank = 0; rank < places.size(); ++rank) {
        const Place& place = places[rank];
        column += rank > 0 && (place.u != places[rank - 1].u || place.v != places[rank - 1].v);
        column_of_[rank] = column;
        levels_[rank] = place.level;
        points_[rank] = place.point;
        rank_of_[place.point] = static_cast<int>(rank);
    }
}

bool are_all_triangles(const FaceList& faces) {
    for (int face = 0; face < faces.size(); ++face) {
        if (faces[face].size() != 3) {
            return false;
        }
    }
    return true;
}

} // namespace
} // namespace korvel::kit
