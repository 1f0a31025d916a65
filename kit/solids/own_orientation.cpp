#include "kit/solids/own_orientation.h"

#include <cmath>
#include <numbers>

#include "kit/base/vectors.h"
#include "kit/solids/box.h"
#include "kit/solids/face_sides.h"
#include "kit/solids/turned_sets.h"

namespace korvel::kit {
namespace {

// Faces that edges connect, turned alike.
struct Piece {
    std::vector<int> positions; // in the body's list
    Box box;
    double volume = 0; // negative when the faces run the wrong way
};

TurnedSets connect(const TMOD3D& model, int body);
std::vector<Piece> pieces_of(const TMOD3D& model, int body, std::vector<int>& turns);
void measure(const TMOD3D& model, int body, const std::vector<int>& turns, Piece& piece);
bool is_inside(const TMOD3D& model, int body, const std::vector<int>& turns, const Piece& inner,
               const Piece& outer);

template <class Visit>
void for_each_triangle(const TMOD3D& model, int face, Visit visit);

} // namespace

OwnOrientation own_orientation(const TMOD3D& model, int body) {
    OwnOrientation own;
    std::vector<Piece> pieces = pieces_of(model, body, own.turns);
    for (Piece& piece : pieces) {
        measure(model, body, own.turns, piece);
    }
    std::vector<const Piece*> solid; // others, such as single faces, contain nothing
    for (const Piece& piece : pieces) {
        if (piece.volume != 0) {
            solid.push_back(&piece);
        }
    }
    std::vector<bool> is_cavity;
    for (const Piece& piece : pieces) {
        bool is_within_odd = false;
        for (const Piece* const other : solid) {
            is_within_odd ^= piece.volume != 0 && other != &piece &&
                             is_inside(model, body, own.turns, piece, *other);
        }
        is_cavity.push_back(is_within_odd);
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        own.volume += is_cavity[i] ? -std::abs(pieces[i].volume) : std::abs(pieces[i].volume);
        if ((pieces[i].volume < 0) != is_cavity[i]) {
            for (const int position : pieces[i].positions) {
                own.turns[position] = -own.turns[position];
            }
        }
    }
    return own;
}

namespace {

// A turn of 1 means: as the first face of its piece.
std::vector<Piece> pieces_of(const TMOD3D& model, int body, std::vector<int>& turns) {
    const CArray<int>& listed = model.bodies[body].polys;
    TurnedSets sets = connect(model, body);
    std::vector<Piece> pieces;
    std::vector<int> piece_of(static_cast<std::size_t>(listed.GetSize()), -1);
    for (int position = 0; position < listed.GetSize(); ++position) {
        if (!is_face(model, listed[position])) {
            turns.push_back(0);
            continue;
        }
        const auto [root, is_against] = sets.root(position);
        turns.push_back(is_against ? -1 : 1);
        if (piece_of[root] < 0) {
            piece_of[root] = static_cast<int>(pieces.size());
            pieces.emplace_back();
        }
        pieces[piece_of[root]].positions.push_back(position);
    }
    return pieces;
}

TurnedSets connect(const TMOD3D& model, int body) {
    TurnedSets sets(static_cast<std::size_t>(model.bodies[body].polys.GetSize()));
    std::vector<FaceSide> sides = sides_of(model, body);
    for_each_edge(sides, [&](std::span<FaceSide> around) {
        if (around.size() > 2) {
            sort_around_edge(around, model, body);
        }
        for (std::size_t i = 1; i < around.size(); ++i) {
            sets.join(around[i - 1].position, around[i].position,
                      around[i - 1].ascends == around[i].ascends);
        }
    });
    return sets;
}

// By tetrahedra from a corner of the piece, so that a place far from the origin costs no digits.
void measure(const TMOD3D& model, int body, const std::vector<int>& turns, Piece& piece) {
    const CArray<int>& listed = model.bodies[body].polys;
    const CArray<int>& first = model.polys[listed[piece.positions[0]]].verts;
    if (first.IsEmpty()) {
        return;
    }
    const Point3 origin = to_point(model.verts[first[0]].model_xyz);
    double sum = 0;
    double lost = 0; // of the sum's last digits (W. Kahan, 1965)
    for (const int position : piece.positions) {
        for (const int v : model.polys[listed[position]].verts) {
            piece.box.take_in(to_point(model.verts[v].model_xyz));
        }
        for_each_triangle(model, listed[position], [&](Point3 a, Point3 b, Point3 c) {
            const double term =
                turns[position] * dot(apart(origin, a), cross(apart(origin, b), apart(origin, c))) -
                lost;
            const double next = sum + term;
            lost = (next - sum) - term;
            sum = next;
        });
    }
    piece.volume = sum / 6;
}

// By the angle under which the outer piece is seen from a point on a face of the inner one: all
// round from inside, none from outside (A. van Oosterom and J. Strackee, The solid angle of a plane
// triangle, 1983).
bool is_inside(const TMOD3D& model, int body, const std::vector<int>& turns, const Piece& inner,
               const Piece& outer) {
    for (std::size_t k = 0; k < 3; ++k) {
        if (inner.box.low[k] < outer.box.low[k] || inner.box.high[k] > outer.box.high[k]) {
            return false;
        }
    }
    const CArray<int>& listed = model.bodies[body].polys;
    Point3 eye = {};
    for_each_triangle(model, listed[inner.positions[0]], [&](Point3 a, Point3 b, Point3 c) {
        for (std::size_t k = 0; k < 3; ++k) {
            eye[k] = (a[k] + b[k] + c[k]) / 3;
        }
    });
    double angle = 0;
    for (const int position : outer.positions) {
        for_each_triangle(model, listed[position], [&](Point3 a, Point3 b, Point3 c) {
            const Point3 p = apart(eye, a);
            const Point3 q = apart(eye, b);
            const Point3 r = apart(eye, c);
            const double at_p = std::sqrt(dot(p, p));
            const double at_q = std::sqrt(dot(q, q));
            const double at_r = std::sqrt(dot(r, r));
            angle += turns[position] * 2 *
                     std::atan2(dot(p, cross(q, r)), at_p * at_q * at_r + dot(p, q) * at_r +
                                                         dot(q, r) * at_p + dot(r, p) * at_q);
        });
    }
    return std::abs(angle) > 2 * std::numbers::pi;
}

// A face of more corners by triangles at its first one.
template <class Visit>
void for_each_triangle(const TMOD3D& model, int face, Visit visit) {
    const CArray<int>& corners = model.polys[face].verts;
    const auto at = [&](int k) { return to_point(model.verts[corners[k]].model_xyz); };
    for (int k = 1; k + 1 < corners.GetSize(); ++k) {
        visit(at(0), at(k), at(k + 1));
    }
}

} // namespace
} // namespace korvel::kit
