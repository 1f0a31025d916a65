#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "kit/solids/list_difference.h"
#include "kit/solids/undo_record.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// What makes one model from another one that differs in few records, such as the model behind an
/// insertion from the one before it. Edges may have other numbers. It leaves out what is
/// gathered and picked, and all of the view but its marks, which is computed again.
class ModelDifference {
public:
    /// There and back. Linear in the models, which have the same bodies.
    static std::pair<ModelDifference, ModelDifference> between(const TMOD3D& here,
                                                               const TMOD3D& there);

    ModelDifference() = default;

    /// Makes the other model from the one that it was taken from, but for these. Linear.
    void apply(TMOD3D& model) const;

    /// What this holds, beside itself.
    std::size_t bytes() const;

private:
    /// Edges next to one another in both models, and whether all run the other way.
    struct EdgeRun {
        int from;
        int to;
        int count;
        bool is_reversed;
    };
    template <class Record>
    struct Replaced {
        int index;
        Record record;
    };
    struct BodyLists {
        int body;
        ListDifference polys, lines, verts, neighbour_bodies;
    };
    /// The numbers of edges in the model that a difference makes, −1 where there is no such edge.
    using Numbers = std::vector<int>;

    static std::vector<EdgeRun> equal_edges(const TMOD3D& here, const TMOD3D& there);
    static Numbers numbers(const std::vector<EdgeRun>& runs, int edges);

    ModelDifference(const TMOD3D& from, const TMOD3D& to, std::vector<EdgeRun> runs);

    void compare_vertices(const TMOD3D& from, const TMOD3D& to, const Numbers& numbers);
    void compare_edges(const TMOD3D& from, const TMOD3D& to);
    void compare_faces(const TMOD3D& from, const TMOD3D& to, const Numbers& numbers);
    void compare_bodies(const TMOD3D& from, const TMOD3D& to, const Numbers& numbers);
    void compare_lists(int body, const BODY3D& from, const TMOD3D& to, const Numbers& numbers,
                       std::vector<int>& places);
    void apply_to_edges(TMOD3D& model) const;
    void apply_to_bodies(TMOD3D& model, const Numbers& numbers) const;

    int verts_ = 0; // in the model that is made
    int edges_ = 0;
    int faces_ = 0;
    std::vector<EdgeRun> runs_; // ascending in that model
    std::vector<Replaced<VERT3D>> vert_records_;
    std::vector<Replaced<LINE3D>> edge_records_;
    std::vector<Replaced<POLY3D>> face_records_;
    std::vector<Replaced<CArray<int>>> neighbour_lists_; // of other faces
    std::vector<Replaced<BODY3D>> body_records_;         // without lists, and what undo leaves
    std::vector<BodyLists> body_lists_;
    Marks::Changes marks_; // of records that are not replaced
    TMOD3D bounds_;        // without records
};

} // namespace korvel::kit
