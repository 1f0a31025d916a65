#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// What the walks of the exact class leave in the records of a model: their marks, and for each
/// face the vertex that it starts at, which shows whether it was turned.
class Marks {
public:
    /// Entries next to one another that change by the same bits. Walks often mark all faces.
    struct Change {
        int list;
        int first;
        int count;
        int bits;
    };
    using Changes = std::vector<Change>;
    enum List { vertex_marks, edge_marks, face_marks, first_corners, body_marks, lists };

    /// Appends a change, unless its bits are 0.
    static void add(Changes& changes, const Change& change);

    explicit Marks(const TMOD3D& model);

    /// Takes on the marks of the model, which has the same records as before. Returns what changed.
    Changes update(const TMOD3D& model);

    /// Makes changes, or takes them back; several of one entry add up. Returns each entry once.
    Changes change(const Changes& changes);

private:
    std::array<std::vector<int>, lists> values_;
};

/// Changes the marks of a model, each once; turns the faces that start at another vertex, and
/// computes their equations.
void change_marks(const Marks::Changes& changes, TMOD3D& model);

/// What a move changes, taken before or after it: the coordinates of the vertices that move, and
/// members the number of which does not depend on the size of the model, except for one volume for
/// each body.
class MoveRecord {
public:
    /// Of a move of the gathered vertices.
    explicit MoveRecord(const TMOD3D& model);

    /// Of the move that another record is of.
    MoveRecord(const TMOD3D& model, const MoveRecord& same_move);

    /// Restores everything but marks and the view. Equations of the edges and faces at the vertices
    /// are computed again, which gives the same values.
    void restore(TMOD3D& model) const;

    /// Restores the view from before a move after which it was not brought up to date.
    void restore_view(TMOD3D& model) const;

    /// What the gathering and the pick were.
    void restore_selection(TMOD3D& model) const;

    /// What the record holds.
    std::size_t bytes() const;

private:
    struct Moved {
        int vertex;
        std::array<double, 3> model_xyz;
        std::array<double, 3> temp_view_xyz;
    };

    void take(const TMOD3D& model, int vertex);
    void take_rest(const TMOD3D& model);

    std::vector<Moved> moved_;
    std::vector<double> volumes_;
    std::vector<BODY3D> spans_; // of the picked and of the scaled body, without their lists
    std::vector<int> span_bodies_;
    TMOD3D rest_; // the bounds and the selection, without records
};

/// What they hold beside themselves, in bytes.
std::size_t bytes_of(const Marks::Changes& changes);
std::size_t bytes_of(const TMOD3D& model);

} // namespace korvel::kit
