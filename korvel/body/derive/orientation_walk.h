#pragma once

#include <span>
#include <vector>

#include "korvel/base/equal_pairs.h"
#include "korvel/base/index_set.h"
#include "korvel/base/packed_lists.h"

namespace korvel {

/// Walks over a body's list of faces and finds which of them have to be turned. From the first face
/// on, each oriented face turns the first face not yet oriented at each of its sides. Faces are
/// taken in passes over the list; which of several paths reaches a face first decides on surfaces
/// that cannot be oriented. Linear in the sides, but for the order of the passes, which costs a few
/// steps for each face.
///
/// A face is referred to by its position in the list; one that is listed twice has two.
class OrientationWalk {
public:
    /// `verts` contains the vertices of the face at each position. `kinds` contains a number for
    /// each side, position by position, that two sides share when they join the same vertices. Both
    /// must outlive the walk.
    OrientationWalk(const std::vector<int>& faces, const PackedLists& verts,
                    std::span<const int> kinds);

    /// Orients all that can be reached from the first position.
    void run();

    bool is_oriented(int position) const { return is_oriented_[position] != 0; }
    bool is_turned(int position) const { return is_turned_[position] != 0; }
    bool any_turned() const { return any_turned_; }
    bool any_repeated() const { return !next_position_.empty(); }

    /// The next position of the same face, or −1.
    int next_position(int position) const { return any_repeated() ? next_position_[position] : -1; }

private:
    void orient_neighbours(int position);
    int first_not_oriented(int side);
    IndexPair side_at(int position, int side) const;
    void turn(int position);
    void orient(int position, int present);

    struct Side {
        int position; ///< of its face
        int next;     ///< the next side of the same kind, or −1
    };

    const PackedLists& verts_;
    std::span<const int> kinds_;
    std::vector<int> next_position_; ///< empty where no face is listed twice
    std::vector<Side> sides_;
    std::vector<int> look_from_;    ///< by kind: the first side whose face may not be oriented yet
    std::vector<char> is_oriented_; ///< by position
    std::vector<char> is_turned_;
    bool any_turned_ = false;
    // A position after the present one is reached in the same pass, one before it in the next.
    IndexSet pass_;
    IndexSet next_pass_;
};

} // namespace korvel
