#pragma once

#include <cstdint>
#include <vector>

#include "korvel/base/key_index.h"
#include "korvel/polyregion/plydt.h"
#include "korvel/polyregion/triangulation/constrained_delaunay.h"
#include "korvel/polyregion/triangulation/front_progress.h"
#include "korvel/polyregion/triangulation/listed_triangles.h"
#include "korvel/polyregion/triangulation/side_tree.h"
#include "korvel/polyregion/triangulation/third_corner.h"

namespace korvel {

/// Triangulates regions by the advancing front: the same triangles, in the same order, with the
/// same radii as the exhaustive form, found with spatial indices.
class AdvancingFront {
public:
    /// Both must outlive this object; no point may be added to the set meanwhile.
    AdvancingFront(PLYDT& set, ListedTriangles& listed);
    AdvancingFront(const AdvancingFront&) = delete;
    AdvancingFront& operator=(const AdvancingFront&) = delete;
    AdvancingFront(AdvancingFront&&) = delete;
    AdvancingFront& operator=(AdvancingFront&&) = delete;
    ~AdvancingFront() = default;

    /// Appends the triangles of one region. False, with nothing done, for a region that the indices
    /// cannot serve: one with coordinates that are infinite or whose products overflow, with all
    /// points at one position, or with sides that are not what `creat_top_rel` derives.
    bool close(const PLYDT::PyToRg& region);

private:
    using Kind = SideTree::Kind;

    void number_vertices(const PLYDT::PyToRg& region);
    bool is_ordinary(const PLYDT::PyToRg& region) const;
    void close_boundary(const PLYDT::PyToRg& region);
    void close_front();
    void close_edge(int a, int b, int apex, int hint);
    void add_side(int p0, int p1, Direction direction, Kind kind);
    void open_or_close(int p0, int p1, int opposite, bool is_apex);

    int vertex_of(int index) const { return vertex_of_.find(static_cast<std::uint32_t>(index)); }
    int hint(int side) const { return hints_[side]; }
    int index(int vertex) const { return indices_[vertex]; }

    PLYDT& set_;
    ListedTriangles& listed_;
    KeyIndex vertex_of_{0};    ///< the vertex of each point of the region
    std::vector<int> indices_; ///< of the point of each vertex
    std::vector<PlanePoint> points_;
    RegionPoints region_points_;
    SideTree sides_;
    ConstrainedDelaunay guide_; ///< has all sides
    ThirdCornerSearch search_;
    FrontProgress progress_;
    int first_front_ = 0;       ///< the first of the tree's sides that a triangle has opened
    std::vector<char> is_open_; ///< for each of these
    std::vector<int> hints_;    ///< for each side the guide's
};

} // namespace korvel
