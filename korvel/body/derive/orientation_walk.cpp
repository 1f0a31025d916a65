#include "korvel/body/derive/orientation_walk.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "korvel/platform/check_point.h"

namespace korvel {
namespace {

/// For each position the next one of the same face, or −1; nothing where no face has two.
std::vector<int> next_positions_of_same_face(const std::vector<int>& faces) {
    const bool is_ascending =
        std::adjacent_find(faces.begin(), faces.end(), std::greater_equal<>()) == faces.end();
    if (is_ascending) {
        return {};
    }
    std::vector<IndexPair> points;
    points.reserve(faces.size());
    for (const int f : faces) {
        points.push_back(IndexPair{f, f});
    }
    const std::vector<int> first = first_equal_pairs(points);
    std::vector<int> next(faces.size(), -1);
    std::vector<int> last(faces.size(), -1); // of those so far, by the first one
    bool any_repeated = false;
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const int position = static_cast<int>(i);
        const int before = std::exchange(last[first[i]], position);
        if (before >= 0) {
            next[before] = position;
            any_repeated = true;
        }
    }
    return any_repeated ? next : std::vector<int>();
}

} // namespace

OrientationWalk::OrientationWalk(const std::vector<int>& faces, const PackedLists& verts,
                                 std::span<const int> kinds)
    : verts_(verts), kinds_(kinds), next_position_(next_positions_of_same_face(faces)),
      sides_(kinds.size()), is_oriented_(faces.size(), 0), is_turned_(faces.size(), 0),
      pass_(static_cast<int>(faces.size())), next_pass_(static_cast<int>(faces.size())) {
    const int most = kinds.empty() ? -1 : *std::max_element(kinds.begin(), kinds.end());
    look_from_.assign(static_cast<std::size_t>(most) + 1, -1);
    std::size_t side = kinds.size();
    for (int position = verts.size(); position-- > 0;) {
        for (const std::size_t first = verts.start(position); side > first;) {
            --side;
            const int next = std::exchange(look_from_[kinds[side]], static_cast<int>(side));
            sides_[side] = {position, next};
        }
    }
}

void OrientationWalk::run() {
    orient(0, -1);
    long long faces = 0;
    while (!pass_.is_empty() || !next_pass_.is_empty()) {
        if (pass_.is_empty()) {
            std::swap(pass_, next_pass_);
        }
        orient_neighbours(pass_.take_first());
        check_point_after(faces++, static_cast<long long>(is_oriented_.size()), 4096,
                          "orienting faces");
    }
}

/// Takes the face's sides in the order in which it runs by now.
void OrientationWalk::orient_neighbours(int position) {
    const int start = static_cast<int>(verts_.start(position));
    const int n = static_cast<int>(verts_[position].size());
    const bool is_turned = is_turned_[position] != 0;
    for (int k = 0; k < n; ++k) {
        // Turned around, the side that closes the boundary stays the last one.
        const int own = start + (is_turned && k < n - 1 ? n - 2 - k : k);
        const int met = first_not_oriented(own);
        if (met < 0) {
            continue;
        }
        const int other = sides_[met].position;
        const IndexPair theirs = side_at(other, met);
        const IndexPair ours = side_at(position, own);
        const bool is_same_way = theirs.a == ours.a && theirs.b == ours.b;
        const bool is_other_way = theirs.a == ours.b && theirs.b == ours.a;
        if (is_turned ? is_other_way : is_same_way) {
            turn(other);
        }
        orient(other, position);
    }
}

/// The first side of the same kind whose face is not oriented yet, or −1. A face stays oriented, so
/// sides that were skipped once are not looked at again.
int OrientationWalk::first_not_oriented(int side) {
    int& first = look_from_[kinds_[side]];
    while (first >= 0 && is_oriented_[sides_[first].position] != 0) {
        first = sides_[first].next;
    }
    return first;
}

IndexPair OrientationWalk::side_at(int position, int side) const {
    const std::span<const int> face = verts_[position];
    const std::size_t k = static_cast<std::size_t>(side) - verts_.start(position);
    return {face[k], k + 1 < face.size() ? face[k + 1] : face[0]};
}

void OrientationWalk::turn(int position) {
    for (; position >= 0; position = next_position(position)) {
        is_turned_[position] = 1;
    }
    any_turned_ = true;
}

/// A face that is listed more than once is taken up at the position that comes first from here.
void OrientationWalk::orient(int position, int present) {
    int taken_up = position;
    for (; position >= 0; position = next_position(position)) {
        is_oriented_[position] = 1;
        if (taken_up <= present && position > present) {
            taken_up = position;
        }
    }
    (taken_up > present ? pass_ : next_pass_).insert(taken_up);
}

} // namespace korvel
