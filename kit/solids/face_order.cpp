#include "kit/solids/face_order.h"

#include <algorithm>
#include <deque>
#include <numeric>
#include <span>
#include <vector>

#include "kit/solids/face_sides.h"
#include "kit/solids/own_orientation.h"

namespace korvel::kit {
namespace {

// Follows the walk of the exact class over a list that it makes.
class FaceOrder {
public:
    FaceOrder(const TMOD3D& model, int body);

    bool is_needed() const { return is_needed_; }

    // The positions of the faces in the present list.
    std::vector<int> run();

private:
    void reach(int face);
    void orient_neighbours(int face);
    const FaceSide* first_against(const FaceSide& side, std::span<const FaceSide> edge) const;
    bool turns_a_wrong_face(int face) const;
    int take_next();
    bool runs_up(const FaceSide& side) const { return side.ascends == (turns_[side.position] > 0); }

    std::vector<FaceSide> sides_;
    std::vector<std::span<const FaceSide>> edges_;
    std::vector<std::vector<int>> edges_of_; // of each face
    std::vector<char> is_at_crowded_edge_;
    std::vector<char> is_reached_;
    std::vector<int> turns_;
    std::deque<int> plain_;   // reached, at edges of two faces
    std::deque<int> crowded_; // reached, at others
    bool is_needed_ = false;
};

} // namespace

void order_faces_for_orientation(TMOD3D& model, int body) {
    FaceOrder order(model, body);
    if (!order.is_needed()) {
        return;
    }
    CArray<int>& listed = model.bodies[body].polys;
    std::vector<int> faces;
    for (const int position : order.run()) {
        faces.push_back(listed[position]);
    }
    std::copy(faces.begin(), faces.end(), listed.begin());
}

namespace {

FaceOrder::FaceOrder(const TMOD3D& model, int body) : sides_(sides_of(model, body)) {
    const auto faces = static_cast<std::size_t>(model.bodies[body].polys.GetSize());
    edges_of_.resize(faces);
    is_at_crowded_edge_.resize(faces, 0);
    is_reached_.resize(faces, 0);
    for_each_edge(sides_, [&](std::span<const FaceSide> edge) {
        for (const FaceSide& side : edge) {
            edges_of_[side.position].push_back(static_cast<int>(edges_.size()));
            if (edge.size() > 2) {
                is_at_crowded_edge_[side.position] = 1;
            }
        }
        is_needed_ |= edge.size() > 2;
        edges_.push_back(edge);
    });
    if (is_needed_) {
        turns_ = own_orientation(model, body).turns;
    }
}

std::vector<int> FaceOrder::run() {
    std::vector<int> starts(edges_of_.size());
    std::iota(starts.begin(), starts.end(), 0);
    std::stable_partition(starts.begin(), starts.end(),
                          [&](int face) { return is_at_crowded_edge_[face] == 0; });
    std::vector<int> order;
    for (const int start : starts) {
        if (is_reached_[start] != 0) {
            continue;
        }
        reach(start);
        while (!plain_.empty() || !crowded_.empty()) {
            order.push_back(take_next());
            orient_neighbours(order.back());
        }
    }
    return order;
}

void FaceOrder::reach(int face) {
    is_reached_[face] = 1;
    (is_at_crowded_edge_[face] != 0 ? crowded_ : plain_).push_back(face);
}

int FaceOrder::take_next() {
    auto next = plain_.begin();
    std::deque<int>& list = plain_.empty() ? crowded_ : plain_;
    if (plain_.empty()) {
        next = std::find_if(crowded_.begin(), crowded_.end(),
                            [&](int face) { return !turns_a_wrong_face(face); });
        next = next == crowded_.end() ? crowded_.begin() : next;
    }
    const int face = *next;
    list.erase(next);
    return face;
}

void FaceOrder::orient_neighbours(int face) {
    for (const int e : edges_of_[face]) {
        const std::span<const FaceSide> edge = edges_[e];
        const auto own = std::find_if(edge.begin(), edge.end(),
                                      [=](const FaceSide& side) { return side.position == face; });
        if (const FaceSide* const other = first_against(*own, edge)) {
            reach(other->position);
        }
    }
}

// The first face not reached that runs against a side, which the list is to have first.
const FaceSide* FaceOrder::first_against(const FaceSide& side,
                                         std::span<const FaceSide> edge) const {
    for (const FaceSide& other : edge) {
        if (is_reached_[other.position] == 0 && runs_up(other) != runs_up(side)) {
            return &other;
        }
    }
    return nullptr;
}

bool FaceOrder::turns_a_wrong_face(int face) const {
    return std::any_of(edges_of_[face].begin(), edges_of_[face].end(), [&](int e) {
        const std::span<const FaceSide> edge = edges_[e];
        const auto own = std::find_if(edge.begin(), edge.end(),
                                      [=](const FaceSide& side) { return side.position == face; });
        const bool is_any_left = std::any_of(edge.begin(), edge.end(), [&](const FaceSide& other) {
            return is_reached_[other.position] == 0;
        });
        return is_any_left && first_against(*own, edge) == nullptr;
    });
}

} // namespace
} // namespace korvel::kit
