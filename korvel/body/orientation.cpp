// Edge directions, the orientation of the bodies' faces, face planes and volumes.

#include <algorithm>
#include <utility>
#include <vector>

#include "korvel/body/body_geometry.h"
#include "korvel/geometry/equal_sides.h"
#include "korvel/geometry/index_set.h"
#include "korvel/geometry/list_index.h"

using korvel::has_element;
using korvel::Side;

namespace {

constexpr int to_propagate = 2; // marks of a face
constexpr int not_oriented = 32;
constexpr int was_oriented = 64; // stays

constexpr double one_sixth = 0.16666666666666666;

/// The places of a body's face list, and how far they are oriented.
class Places {
public:
    Places(const TMOD3D& model, std::vector<int> faces);

    /// Orients all that can be reached from the first place.
    void propagate();

    /// Turns the faces that came out turned and sets the marks; returns the body's volume.
    double store(TMOD3D& model) const;

    bool any_turned() const { return any_turned_; }

    /// Turns the face at each place, one that is listed twice twice; returns the body's volume.
    double turn_all(TMOD3D& model) const;

private:
    void orient(int place, int present);
    void orient_neighbours(int place);
    int first_not_oriented(std::size_t side);

    std::vector<int> faces_;        ///< at each place
    std::vector<int> next_place_;   ///< the next one that names the same face, or −1
    std::vector<int> starts_;       ///< of the sides of each place
    std::vector<Side> sides_;       ///< of all places, as the faces run at the start
    std::vector<int> place_of_;     ///< by side
    std::vector<int> next_side_;    ///< the next side between the same two vertices, or −1
    std::vector<int> first_side_;   ///< the first side between the same two vertices
    std::vector<int> look_from_;    ///< by first side: where to look for a face not yet oriented
    std::vector<char> is_oriented_; ///< by place
    std::vector<char> is_turned_;
    bool any_turned_ = false;
    // A place behind the present one is reached in the same pass, one before it in the next.
    korvel::IndexSet pass_;
    korvel::IndexSet next_pass_;
};

} // namespace

void TMOD3D::comput_mode_aux_parm() {
    for (LINE3D& line : lines) {
        line.set_line_eqt(verts);
    }
    korvel::orient_bodies(*this);
    for (POLY3D& face : polys) {
        face.set_poly_eql(verts);
    }
}

namespace korvel {

void derive_all(TMOD3D& model) {
    orient_bodies(model);
    renew_equations_and_view(model);
    model.found_top_rel();
}

void orient_bodies(TMOD3D& model) {
    // A volume holds for good unless a later body has turned faces, which may be shared.
    int stale_volumes = 0;
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        if (orient_body(model, b)) {
            stale_volumes = b;
        }
    }
    for (int b = 0; b < stale_volumes; ++b) {
        model.bodies[b].volume = body_volume(model, model.bodies[b]);
    }
}

/// From the first face on, each oriented face turns the first face not yet oriented at each of its
/// sides. Faces are taken in passes over the list; which of several paths reaches a face first
/// decides on surfaces that cannot be oriented.
bool orient_body(TMOD3D& model, int body) {
    // Places of the list that name no face take no part.
    std::vector<int> faces;
    faces.reserve(static_cast<std::size_t>(model.bodies[body].polys.GetSize()));
    for (const int f : model.bodies[body].polys) {
        if (has_element(model.polys, f)) {
            faces.push_back(f);
        }
    }
    if (faces.empty()) {
        model.bodies[body].volume = 0;
        return false;
    }
    Places places(model, faces);
    places.propagate();
    double volume = places.store(model);
    const bool is_inside_out = volume < 0;
    if (is_inside_out) {
        volume = places.turn_all(model);
    }
    model.bodies[body].volume = volume;
    return is_inside_out || places.any_turned();
}

double body_volume(TMOD3D& model, const BODY3D& body) {
    double sum = 0;
    for (const int f : body.polys) {
        if (has_element(model.polys, f)) {
            sum += model.polys[f].poly_volume(model.verts);
        }
    }
    return sum * one_sixth;
}

} // namespace korvel

namespace {

/// For each index the next one with the same first equal, or −1.
std::vector<int> next_equal(const std::vector<int>& first) {
    std::vector<int> next(first.size(), -1);
    std::vector<int> last(first.size(), -1); // of those so far, by the first one
    for (std::size_t i = 0; i < first.size(); ++i) {
        const int index = static_cast<int>(i);
        const int before = std::exchange(last[static_cast<std::size_t>(first[i])], index);
        if (before >= 0) {
            next[static_cast<std::size_t>(before)] = index;
        }
    }
    return next;
}

std::vector<int> next_places_of_same_face(const std::vector<int>& faces) {
    std::vector<Side> points;
    points.reserve(faces.size());
    for (const int f : faces) {
        points.push_back(korvel::point_side(f));
    }
    return next_equal(korvel::first_equal_sides(points));
}

Places::Places(const TMOD3D& model, std::vector<int> faces)
    : faces_(std::move(faces)), next_place_(next_places_of_same_face(faces_)),
      is_oriented_(faces_.size(), 0), is_turned_(faces_.size(), 0),
      pass_(static_cast<int>(faces_.size())), next_pass_(static_cast<int>(faces_.size())) {
    starts_.reserve(faces_.size() + 1);
    sides_.reserve(3 * faces_.size());
    place_of_.reserve(3 * faces_.size());
    for (std::size_t place = 0; place < faces_.size(); ++place) {
        starts_.push_back(static_cast<int>(sides_.size()));
        const CArray<int>& verts = model.polys[faces_[place]].verts;
        const int n = verts.GetSize();
        for (int k = 0; k < n; ++k) {
            sides_.push_back({verts[k], verts[k + 1 < n ? k + 1 : 0]});
            place_of_.push_back(static_cast<int>(place));
        }
    }
    starts_.push_back(static_cast<int>(sides_.size()));
    first_side_ = korvel::first_equal_sides(sides_);
    next_side_ = next_equal(first_side_);
    look_from_ = first_side_;
}

void Places::propagate() {
    orient(0, -1);
    while (!pass_.is_empty() || !next_pass_.is_empty()) {
        if (pass_.is_empty()) {
            std::swap(pass_, next_pass_);
        }
        orient_neighbours(pass_.take_first());
    }
}

/// Takes the face's sides in the order in which it runs by now.
void Places::orient_neighbours(int place) {
    const int start = starts_[static_cast<std::size_t>(place)];
    const int n = starts_[static_cast<std::size_t>(place) + 1] - start;
    const bool is_turned = is_turned_[static_cast<std::size_t>(place)] != 0;
    for (int k = 0; k < n; ++k) {
        // Turned around, the side that closes the boundary stays the last one.
        const int own = is_turned && k < n - 1 ? n - 2 - k : k;
        const auto side = static_cast<std::size_t>(start) + static_cast<std::size_t>(own);
        const int met = first_not_oriented(side);
        if (met < 0) {
            continue;
        }
        const Side& theirs = sides_[static_cast<std::size_t>(met)];
        const Side& ours = sides_[side];
        const bool is_same_way = theirs.a == ours.a && theirs.b == ours.b;
        const bool is_other_way = theirs.a == ours.b && theirs.b == ours.a;
        const int other = place_of_[static_cast<std::size_t>(met)];
        if (is_turned ? is_other_way : is_same_way) {
            for (int at = other; at >= 0; at = next_place_[static_cast<std::size_t>(at)]) {
                is_turned_[static_cast<std::size_t>(at)] = 1;
            }
            any_turned_ = true;
        }
        orient(other, place);
    }
}

/// A face that is listed more than once is taken up at the place that comes first from here.
void Places::orient(int place, int present) {
    int taken_up = place;
    for (; place >= 0; place = next_place_[static_cast<std::size_t>(place)]) {
        is_oriented_[static_cast<std::size_t>(place)] = 1;
        if (taken_up <= present && place > present) {
            taken_up = place;
        }
    }
    (taken_up > present ? pass_ : next_pass_).insert(taken_up);
}

/// The first side between the same two vertices whose face is not oriented yet, or −1. Orientation
/// is never taken back, so what was passed over once is not looked at again.
int Places::first_not_oriented(std::size_t side) {
    int& at = look_from_[static_cast<std::size_t>(first_side_[side])];
    while (at >= 0 &&
           is_oriented_[static_cast<std::size_t>(place_of_[static_cast<std::size_t>(at)])] != 0) {
        at = next_side_[static_cast<std::size_t>(at)];
    }
    return at;
}

double Places::store(TMOD3D& model) const {
    std::vector<char> is_done(any_turned_ ? faces_.size() : 0, 0);
    double sum = 0;
    for (std::size_t place = 0; place < faces_.size(); ++place) {
        POLY3D& face = model.polys[faces_[place]];
        face.state_flags = (face.state_flags & ~(to_propagate | not_oriented)) | was_oriented |
                           (is_oriented_[place] != 0 ? 0 : not_oriented);
        if (is_turned_[place] != 0) {
            // Once for each face, at the first place that names it.
            if (is_done[place] == 0) {
                face.invert_poly_range();
            }
            if (next_place_[place] >= 0) {
                is_done[static_cast<std::size_t>(next_place_[place])] = 1;
            }
        }
        sum += face.poly_volume(model.verts);
    }
    return sum * one_sixth;
}

double Places::turn_all(TMOD3D& model) const {
    double sum = 0;
    for (const int f : faces_) {
        model.polys[f].invert_poly_range();
        sum += model.polys[f].poly_volume(model.verts);
    }
    const bool any_repeated =
        std::any_of(next_place_.begin(), next_place_.end(), [](int place) { return place >= 0; });
    if (any_repeated) {
        sum = 0; // faces were turned again after they were counted
        for (const int f : faces_) {
            sum += model.polys[f].poly_volume(model.verts);
        }
    }
    return sum * one_sixth;
}

} // namespace
