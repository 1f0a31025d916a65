#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <vector>

#include "korvel/polyregion/triangulation/constrained_delaunay.h"
#include "korvel/polyregion/triangulation/edge_frame.h"
#include "korvel/polyregion/triangulation/exclusion_zones.h"
#include "korvel/polyregion/triangulation/listed_triangles.h"
#include "korvel/polyregion/triangulation/point_tree.h"
#include "korvel/polyregion/triangulation/side_tree.h"

namespace korvel {

/// Looks for the third corners of triangles among the points of a region.
class ThirdCornerSearch {
public:
    /// `indices` names the point of each vertex; all must outlive this object.
    ThirdCornerSearch(const RegionPoints& points, const SideTree& sides, ConstrainedDelaunay& guide,
                      const std::vector<int>& indices, const ListedTriangles& listed)
        : points_(points), sides_(sides), guide_(guide), indices_(indices), listed_(listed),
          tree_(points, PointTree::Order::by_nearness), zones_(points) {}

    /// To be called when the points have started over.
    void start();

    /// The third corner for the edge a → b, or −1: among the vertices on its left or on its line
    /// that survive all tests the first with the smallest radius, unless the very first survivor
    /// has a radius that is not a number, which nothing beats. `apex` is the third corner of a
    /// triangle on the left of the edge that has been found already, or −1; `hint` is the guide's
    /// for the edge.
    int choose(int a, int b, int apex, int hint);

    double radius(int a, int b, int p) const {
        return circumradius(points_.at(a), points_.at(b), points_.at(p));
    }

private:
    static constexpr int none = RegionPoints::none;

    struct FlatSurvivors {
        int undefined = none; ///< with a radius that is not a number
        int below_all = none; ///< with a radius of −∞, from a radicand of −0
    };

    /// The best survivor so far and its radius.
    struct Nearest {
        int vertex = none;
        double radius = std::numeric_limits<double>::infinity();
    };

    /// A box or a vertex that waits with a lower bound for the squares of its radii.
    struct Waiting {
        double bound;
        int number;
        bool is_vertex;

        bool operator<(const Waiting& other) const { return bound > other.bound; } // least on top
    };

    PlanePoint at(int p) const { return points_.at(p); }

    int choose_in_the_open(int a, int b, int hint);
    FlatSurvivors first_flat_survivors(const EdgeFrame& frame, int hint);
    int choose_behind(int a, int b, int apex, int hint);
    int choose_exhaustively(int a, int b);
    int choose_among(int a, int b, const std::vector<int>& ascending);
    int nearest_survivor(const EdgeFrame& frame, int hint);
    Nearest survivor_of_guide(int a, int b, int hint);
    void gather_waiting(const EdgeFrame& frame, const Nearest& best);
    void examine(int a, int b, int p, Nearest& best);
    int first_infinite_survivor(int a, int b);
    void wait(const EdgeFrame& frame, int p, double best_radius);
    bool wait_beside(const EdgeFrame& frame, int best, double best_radius);
    void enter_box(const EdgeFrame& frame, int box, double limit);
    void add_nearest_zones(int a, int b);

    bool may_close(int a, int b, int p) const {
        return p != a && p != b && turn_sign(at(a), at(b), at(p)) != -1;
    }
    bool survives(int a, int b, int p);
    int side_across(const std::array<SideTree::Segment, 2>& segments) const;
    bool surely_survives(int a, int b, int p) const;
    bool is_listed(int a, int b, int p) const;

    const RegionPoints& points_;
    const SideTree& sides_;
    ConstrainedDelaunay& guide_;
    const std::vector<int>& indices_;
    const ListedTriangles& listed_;
    PointTree tree_;
    ExclusionZones zones_;
    int last_inner_ = none; ///< the vertex found inside a triangle last, or the last apex
    std::vector<Waiting> waiting_;
    std::vector<int> apart_; ///< for each vertex the last search that takes it apart from the boxes
    int search_ = 0;
    std::vector<int> suspects_;
};

} // namespace korvel
