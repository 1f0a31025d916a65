#include "kit/solids/settled_orientation.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "kit/solids/exact.h"
#include "kit/solids/moved_equations.h"

namespace korvel::kit {
namespace {

std::vector<int> body_of_each_face(const TMOD3D& model);
int direction_along(const POLY3D& face, const LINE3D& edge);
int known_face_of(int face, std::vector<int>& neighbour);
void mark_oriented(POLY3D& face, bool is_reached);

} // namespace

void SettledOrientation::prepare(const TMOD3D& model) {
    if (state_ == State::unknown) {
        state_ = settle(model) ? State::settled : State::unsettled;
    }
}

void SettledOrientation::renew(TMOD3D& model) {
    prepare(model);
    if (state_ == State::unsettled || is_turned(model)) {
        model.comput_mode_aux_parm();
        return;
    }
    compute_equations_at(model, span_of(model.relat_list_2));
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        model.bodies[b].volume = volumes_[static_cast<std::size_t>(b)];
        for (const int f : model.bodies[b].polys) {
            mark_oriented(model.polys[f], is_reached_[static_cast<std::size_t>(f)]);
        }
    }
}

// Each face is of one body, and at each edge a body has one face, or two that run along it in
// opposite ways.
bool SettledOrientation::settle(const TMOD3D& model) {
    const std::vector<int> body_of = body_of_each_face(model);
    if (body_of.empty()) {
        return false;
    }
    neighbour_.resize(body_of.size());
    std::iota(neighbour_.begin(), neighbour_.end(), 0);
    constexpr int most = 64; // bodies at an edge, or so many pairs would take too long
    int sides = 0;
    for (const LINE3D& edge : model.lines) {
        if (edge.faces.GetSize() > 2 * most) {
            return false;
        }
        for (int i = 0; i < edge.faces.GetSize(); ++i) {
            const int face = edge.faces[i];
            const int body = body_of[static_cast<std::size_t>(face)];
            const int along = direction_along(model.polys[face], edge);
            if (along == 0) {
                return false;
            }
            ++sides;
            bool has_other = false;
            for (int k = 0; k < i; ++k) {
                const int other = edge.faces[k];
                if (body < 0 || body_of[static_cast<std::size_t>(other)] != body) {
                    continue;
                }
                if (has_other || direction_along(model.polys[other], edge) == along) {
                    return false;
                }
                has_other = true;
                neighbour_[static_cast<std::size_t>(known_face_of(other, neighbour_))] =
                    known_face_of(face, neighbour_);
            }
        }
    }
    const int sides_of_faces =
        std::accumulate(model.polys.begin(), model.polys.end(), 0,
                        [](int sum, const POLY3D& face) { return sum + face.verts.GetSize(); });
    if (sides != sides_of_faces) {
        return false;
    }
    find_reached(model);
    return true;
}

void SettledOrientation::find_reached(const TMOD3D& model) {
    is_reached_.assign(neighbour_.size(), false);
    for (const BODY3D& body : model.bodies) {
        for (const int f : body.polys) {
            is_reached_[static_cast<std::size_t>(f)] =
                known_face_of(f, neighbour_) == known_face_of(body.polys[0], neighbour_);
        }
    }
}

bool SettledOrientation::is_turned(const TMOD3D& model) {
    volumes_.resize(static_cast<std::size_t>(model.bodies.GetSize()));
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        double& volume = volumes_[static_cast<std::size_t>(b)];
        volume = operand(model).get_pt_bady_v(b);
        if (volume < 0) {
            return true;
        }
    }
    return false;
}

namespace {

/// −1 for faces of no body; nothing if a face is listed twice or one that does not exist.
std::vector<int> body_of_each_face(const TMOD3D& model) {
    std::vector<int> body_of(static_cast<std::size_t>(model.polys.GetSize()), -1);
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        for (const int f : model.bodies[b].polys) {
            if (f < 0 || f >= model.polys.GetSize() ||
                std::exchange(body_of[static_cast<std::size_t>(f)], b) >= 0) {
                return {};
            }
        }
    }
    return body_of;
}

/// 1 or −1; 0 if the face has no side along the edge, or several.
int direction_along(const POLY3D& face, const LINE3D& edge) {
    int direction = 0;
    const int n = face.verts.GetSize();
    for (int k = 0; k < n; ++k) {
        const int a = face.verts[k];
        const int b = face.verts[k + 1 < n ? k + 1 : 0];
        const bool is_along = a == edge.start_vert && b == edge.end_vert;
        const bool is_against = a == edge.end_vert && b == edge.start_vert;
        if (is_along || is_against) {
            if (direction != 0 || a == b) {
                return 0;
            }
            direction = is_along ? 1 : -1;
        }
    }
    return direction;
}

/// The face that the piece of a face is known by.
int known_face_of(int face, std::vector<int>& neighbour) {
    const auto next = [&](int f) -> int& { return neighbour[static_cast<std::size_t>(f)]; };
    while (next(face) != face) {
        face = next(face) = next(next(face)); // halves the way for the next time
    }
    return face;
}

/// As the walk over the faces leaves its marks.
void mark_oriented(POLY3D& face, bool is_reached) {
    constexpr int to_propagate = 2;
    constexpr int not_oriented = 32;
    constexpr int was_oriented = 64;
    face.state_flags = (face.state_flags & ~(to_propagate | not_oriented)) | was_oriented |
                       (is_reached ? 0 : not_oriented);
}

} // namespace
} // namespace korvel::kit
