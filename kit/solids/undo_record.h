#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// What the walks of the exact class leave in the records of a model: their marks, and for each
/// face the vertex that it starts at, which shows whether it was turned.
class Marks {
public:
    /// An entry as it was.
    struct Change {
        std::size_t list;
        std::size_t index;
        int before;
    };

    explicit Marks(const TMOD3D& model);

    /// Takes on the marks of the model, which has the same records as before. Returns what changed.
    std::vector<Change> update(const TMOD3D& model);

    /// Takes changes back.
    void revert(const std::vector<Change>& changes);

    /// Gives them to the model; turns the faces that start at another vertex.
    void restore(TMOD3D& model) const;

private:
    enum List { vertex_marks, edge_marks, face_marks, first_corners, body_marks, lists };
    std::array<std::vector<int>, lists> values_;
};

/// What a move changes, taken before it: the coordinates of the vertices that move, and members the
/// number of which does not depend on the size of the model, except for one volume for each body.
class MoveRecord {
public:
    /// Of a move of the gathered vertices.
    explicit MoveRecord(const TMOD3D& model);

    /// Restores everything but marks and the view. Equations of edges and faces are computed again,
    /// which gives the same values. Linear in the model.
    void restore(TMOD3D& model) const;

    /// What the gathering and the pick were.
    void restore_selection(TMOD3D& model) const;

private:
    struct Moved {
        int vertex;
        std::array<double, 3> model_xyz;
        std::array<double, 3> temp_view_xyz;
    };

    std::vector<Moved> moved_;
    std::vector<double> volumes_;
    std::vector<BODY3D> spans_; // of the picked and of the scaled body, without their lists
    std::vector<int> span_bodies_;
    TMOD3D rest_; // the bounds and the selection, without records
};

} // namespace korvel::kit
