// Edge directions, the orientation of the bodies' faces, face planes and volumes.

#include <algorithm>
#include <functional>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

#include "korvel/base/index_set.h"
#include "korvel/base/indices.h"
#include "korvel/body/derive/derivation.h"
#include "korvel/body/derive/flat_model.h"
#include "korvel/geometry/vectors.h"

using korvel::has_element;
using korvel::IndexLists;
using korvel::Side;

namespace {

constexpr int to_propagate = 2; // marks of a face
constexpr int not_oriented = 32;

constexpr double one_sixth = 0.16666666666666666;

template <class Elements>
auto& at(Elements& elements, int index) {
    return elements[index];
}

/// The places of a body's face list, and how far they are oriented.
class Places {
public:
    /// `verts` lists the vertices of the face at each place as it runs at the start. `kinds` tells
    /// for each side, place by place, between which two vertices it lies.
    Places(const std::vector<int>& faces, const IndexLists& verts, std::span<const int> kinds);

    /// Orients all that can be reached from the first place.
    void propagate();

    bool is_oriented(int place) const { return at(is_oriented_, place) != 0; }
    bool is_turned(int place) const { return at(is_turned_, place) != 0; }
    bool any_turned() const { return any_turned_; }
    bool any_repeated() const { return !next_place_.empty(); }

    /// The next place that names the same face, or −1.
    int next_place(int place) const { return any_repeated() ? at(next_place_, place) : -1; }

private:
    Side side(int place, int number) const;
    void orient(int place, int present);
    void orient_neighbours(int place);
    int first_not_oriented(int number);

    const IndexLists& verts_;
    std::span<const int> kinds_;
    std::vector<int> next_place_;        ///< empty where no face is named twice
    korvel::UnsetVector<int> next_side_; ///< the next side of the same kind, or −1
    std::vector<int> look_from_;    ///< by kind: where to look for a face not yet oriented, or −1
    std::vector<char> is_oriented_; ///< by place
    std::vector<char> is_turned_;
    bool any_turned_ = false;
    // A place behind the present one is reached in the same pass, one before it in the next.
    korvel::IndexSet pass_;
    korvel::IndexSet next_pass_;
};

/// The faces of a model's records …
class RecordFaces {
public:
    explicit RecordFaces(TMOD3D& model) : model_(model) {}

    int size() const { return model_.polys.GetSize(); }
    const CArray<int>& verts(int f) const { return model_.polys[f].verts; }
    void turn(int f) { model_.polys[f].invert_poly_range(); }
    void mark(int f, bool is_oriented) {
        int& flags = model_.polys[f].state_flags;
        flags = (flags & ~(to_propagate | not_oriented)) | korvel::was_oriented |
                (is_oriented ? 0 : not_oriented);
    }
    double volume(int f) const { return model_.polys[f].poly_volume(model_.verts); }
    double turned_volume(int f) const {
        const CArray<int>& v = verts(f);
        const int n = v.GetSize();
        if (n < 3 || !has_element(model_.verts, v[n - 1]) || !has_element(model_.verts, v[n - 2]) ||
            !has_element(model_.verts, v[n - 3])) {
            return 0;
        }
        return korvel::triple_product(at(v[n - 1]), at(v[n - 2]), at(v[n - 3]));
    }

private:
    const double* at(int v) const { return model_.verts[v].model_xyz; }

    TMOD3D& model_;
};

/// … and those of a flat model of triangles, which have no marks yet.
class FlatFaces {
public:
    explicit FlatFaces(korvel::FlatModel& flat) : flat_(flat) {}

    int size() const { return flat_.face_verts.size(); }
    IndexLists::Range verts(int f) const { return flat_.face_verts[f]; }
    void turn(int f) {
        int* const v = flat_.face_verts.first_of(f);
        std::swap(v[0], v[2]);
    }
    void mark(int /*f*/, bool /*is_oriented*/) {}
    double volume(int f) const {
        const int* const v = verts(f).first;
        return korvel::triple_product(at(v[0]), at(v[1]), at(v[2]));
    }
    double turned_volume(int f) const {
        const int* const v = verts(f).first;
        return korvel::triple_product(at(v[2]), at(v[1]), at(v[0]));
    }

private:
    const double* at(int v) const { return flat_.points[v].model; }

    korvel::FlatModel& flat_;
};

struct Outcome {
    double volume = 0; ///< as the faces run in the end
    bool any_turned = false;
};

/// The faces that a body lists and that exist. Other places of its list take no part.
std::vector<int> listed_faces(const BODY3D& body, int faces) {
    std::vector<int> listed;
    listed.reserve(static_cast<std::size_t>(body.polys.GetSize()));
    std::copy_if(body.polys.begin(), body.polys.end(), std::back_inserter(listed),
                 [=](int f) { return f >= 0 && f < faces; });
    return listed;
}

/// Sets the marks and turns the faces that came out turned, and then all where the body would be
/// inside out.
template <class Faces>
Outcome store(const Places& places, const std::vector<int>& listed, Faces faces) {
    std::vector<char> is_done(places.any_repeated() ? listed.size() : 0, 0);
    double sum = 0;
    double turned_sum = 0;
    for (int place = 0; place < static_cast<int>(listed.size()); ++place) {
        const int f = listed[place];
        faces.mark(f, places.is_oriented(place));
        const int next = places.next_place(place);
        if (places.is_turned(place)) {
            // Once for each face, at the first place that names it.
            if (is_done.empty() || is_done[place] == 0) {
                faces.turn(f);
            }
            if (next >= 0) {
                is_done[next] = 1;
            }
        }
        sum += faces.volume(f);
        turned_sum += faces.turned_volume(f);
    }
    if (!(sum * one_sixth < 0)) {
        return {sum * one_sixth, places.any_turned()};
    }

    // At each place, so that a face that is listed twice is turned twice.
    for (const int f : listed) {
        faces.turn(f);
    }
    if (places.any_repeated()) {
        turned_sum = 0;
        for (const int f : listed) {
            turned_sum += faces.volume(f);
        }
    }
    return {turned_sum * one_sixth, true};
}

/// From the first face on, each oriented face turns the first face not yet oriented at each of its
/// sides. Faces are taken in passes over the list; which of several paths reaches a face first
/// decides on surfaces that cannot be oriented.
template <class Faces>
Outcome orient(const std::vector<int>& listed, Faces faces) {
    if (listed.empty()) {
        return {};
    }
    IndexLists verts(static_cast<int>(listed.size()), 3 * listed.size());
    std::vector<Side> sides;
    sides.reserve(3 * listed.size());
    for (const int f : listed) {
        const auto& face = faces.verts(f);
        for (const int* v = face.begin(); v != face.end(); ++v) {
            verts.add(*v);
            sides.push_back({*v, v + 1 == face.end() ? *face.begin() : v[1]});
        }
        verts.end_list();
    }
    const std::vector<int> kinds = korvel::first_equal_sides(sides);
    Places places(listed, verts, kinds);
    places.propagate();
    return store(places, listed, faces);
}

/// A volume holds for good unless a later body has turned faces, which may be shared.
template <class Orient, class Faces>
void orient_each(TMOD3D& model, Faces faces, Orient orient) {
    int stale_volumes = 0;
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        const Outcome outcome = orient(listed_faces(model.bodies[b], faces.size()));
        model.bodies[b].volume = outcome.volume;
        if (outcome.any_turned) {
            stale_volumes = b;
        }
    }
    for (int b = 0; b < stale_volumes; ++b) {
        double sum = 0;
        for (const int f : listed_faces(model.bodies[b], faces.size())) {
            sum += faces.volume(f);
        }
        model.bodies[b].volume = sum * one_sixth;
    }
}

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

void orient_bodies(TMOD3D& model) {
    const RecordFaces faces(model);
    orient_each(model, faces,
                [&](const std::vector<int>& listed) { return orient(listed, faces); });
}

void orient_body(TMOD3D& model, int body) {
    const RecordFaces faces(model);
    model.bodies[body].volume =
        orient(listed_faces(model.bodies[body], faces.size()), faces).volume;
}

void orient_bodies(TMOD3D& model, FlatModel& flat, const korvel::UnsetVector<int>& side_edges) {
    const FlatFaces faces(flat);
    const bool is_one_body = model.bodies.GetSize() == 1;
    orient_each(model, faces, [&](const std::vector<int>& listed) {
        int next = 0;
        if (is_one_body && static_cast<int>(listed.size()) == faces.size() &&
            std::all_of(listed.begin(), listed.end(), [&](int f) { return f == next++; })) {
            Places places(listed, flat.face_verts, side_edges);
            places.propagate();
            return store(places, listed, faces);
        }
        return orient(listed, faces);
    });
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

/// For each place the next one that names the same face, or −1; nothing where no face has two.
std::vector<int> next_places_of_same_face(const std::vector<int>& faces) {
    if (std::adjacent_find(faces.begin(), faces.end(), std::greater_equal<>()) == faces.end()) {
        return {};
    }
    std::vector<Side> points;
    points.reserve(faces.size());
    for (const int f : faces) {
        points.push_back(korvel::point_side(f));
    }
    const std::vector<int> first = korvel::first_equal_sides(points);
    std::vector<int> next(faces.size(), -1);
    std::vector<int> last(faces.size(), -1); // of those so far, by the first one
    bool any_repeated = false;
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const int place = static_cast<int>(i);
        const int before = std::exchange(last[first[i]], place);
        if (before >= 0) {
            next[before] = place;
            any_repeated = true;
        }
    }
    return any_repeated ? next : std::vector<int>();
}

Places::Places(const std::vector<int>& faces, const IndexLists& verts, std::span<const int> kinds)
    : verts_(verts), kinds_(kinds), next_place_(next_places_of_same_face(faces)),
      next_side_(kinds.size()), is_oriented_(faces.size(), 0), is_turned_(faces.size(), 0),
      pass_(static_cast<int>(faces.size())), next_pass_(static_cast<int>(faces.size())) {
    const int most = kinds.empty() ? -1 : *std::max_element(kinds.begin(), kinds.end());
    look_from_.assign(static_cast<std::size_t>(most) + 1, -1);
    for (std::size_t side = kinds.size(); side-- > 0;) {
        next_side_[side] = std::exchange(at(look_from_, kinds[side]), static_cast<int>(side));
    }
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
    const int start = verts_.start(place);
    const int n = verts_.start(place + 1) - start;
    const bool is_turned = at(is_turned_, place) != 0;
    for (int k = 0; k < n; ++k) {
        // Turned around, the side that closes the boundary stays the last one.
        const int own = start + (is_turned && k < n - 1 ? n - 2 - k : k);
        const int met = first_not_oriented(own);
        if (met < 0) {
            continue;
        }
        const int other = verts_.list_at(met);
        const Side theirs = side(other, met);
        const Side ours = side(place, own);
        const bool is_same_way = theirs.a == ours.a && theirs.b == ours.b;
        const bool is_other_way = theirs.a == ours.b && theirs.b == ours.a;
        if (is_turned ? is_other_way : is_same_way) {
            for (int same = other; same >= 0; same = next_place(same)) {
                at(is_turned_, same) = 1;
            }
            any_turned_ = true;
        }
        orient(other, place);
    }
}

Side Places::side(int place, int number) const {
    const IndexLists::Range face = verts_[place];
    const int* const a = face.first + (number - verts_.start(place));
    return {*a, a + 1 == face.last ? *face.first : a[1]};
}

/// A face that is listed more than once is taken up at the place that comes first from here.
void Places::orient(int place, int present) {
    int taken_up = place;
    for (; place >= 0; place = next_place(place)) {
        at(is_oriented_, place) = 1;
        if (taken_up <= present && place > present) {
            taken_up = place;
        }
    }
    (taken_up > present ? pass_ : next_pass_).insert(taken_up);
}

/// The first side between the same two vertices whose face is not oriented yet, or −1. Orientation
/// is never taken back, so what was passed over once is not looked at again.
int Places::first_not_oriented(int number) {
    int& first = at(look_from_, at(kinds_, number));
    while (first >= 0 && at(is_oriented_, verts_.list_at(first)) != 0) {
        first = at(next_side_, first);
    }
    return first;
}

} // namespace
