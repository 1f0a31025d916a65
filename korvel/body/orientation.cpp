// Edge directions, the orientation of the bodies' faces, face planes and volumes.

#include <functional>
#include <queue>
#include <utility>
#include <vector>

#include "korvel/body/body_geometry.h"
#include "korvel/geometry/first_index.h"
#include "korvel/geometry/list_index.h"

using korvel::has_element;

namespace {

constexpr int to_propagate = 2; // marks of a face
constexpr int not_oriented = 32;
constexpr int was_oriented = 64; // stays

/// The places of a body's face list by the vertex pairs on their boundaries.
class PairPlaces {
public:
    PairPlaces(const TMOD3D& model, const std::vector<int>& faces);

    /// The first place whose face holds the pair and is not oriented yet, or −1. Orientation is
    /// never taken back, so what was passed over once is not looked at again.
    int first_not_oriented(const TMOD3D& model, const std::vector<int>& faces, int a, int b);

private:
    korvel::FirstIndex pair_numbers_;
    std::vector<int> next_;   ///< for each pair where to look on …
    std::vector<int> ends_;   ///< … and where its places end
    std::vector<int> places_; ///< of all pairs, ascending within each
};

/// For each place of the list the next one that names the same face, or −1.
std::vector<int> next_places_of_same_face(const std::vector<int>& faces);

} // namespace

void TMOD3D::comput_mode_aux_parm() {
    for (LINE3D& line : lines) {
        line.set_line_eqt(verts);
    }
    for (int b = 0; b < bodies.GetSize(); ++b) {
        korvel::orient_body(*this, b);
    }
    for (POLY3D& face : polys) {
        face.set_poly_eql(verts);
    }
    for (BODY3D& body : bodies) {
        body.volume = korvel::body_volume(*this, body);
    }
}

namespace korvel {

/// From the first face on, each oriented face turns the first face not yet oriented at each of its
/// sides. Faces are taken in passes over the list; which of several paths reaches a face first
/// decides on surfaces that cannot be oriented.
void orient_body(TMOD3D& model, int body) {
    // Places of the list that name no face take no part.
    std::vector<int> faces;
    for (const int f : model.bodies[body].polys) {
        if (has_element(model.polys, f)) {
            faces.push_back(f);
        }
    }
    if (faces.empty()) {
        model.bodies[body].volume = body_volume(model, model.bodies[body]);
        return;
    }
    for (const int f : faces) {
        model.polys[f].state_flags &= ~to_propagate;
        model.polys[f].state_flags |= not_oriented | was_oriented;
    }
    PairPlaces places(model, faces);
    const std::vector<int> next_place = next_places_of_same_face(faces);

    // A place behind the present one is reached in the same pass, one before it in the next.
    using Pass = std::priority_queue<int, std::vector<int>, std::greater<>>;
    Pass pass;
    Pass next_pass;
    const auto orient = [&](int place, int present) {
        POLY3D& face = model.polys[faces[static_cast<std::size_t>(place)]];
        face.state_flags |= to_propagate;
        face.state_flags &= ~not_oriented;
        for (; place >= 0; place = next_place[static_cast<std::size_t>(place)]) {
            (place > present ? pass : next_pass).push(place);
        }
    };
    orient(0, -1);
    while (!pass.empty() || !next_pass.empty()) {
        if (pass.empty()) {
            std::swap(pass, next_pass);
        }
        const int place = pass.top();
        pass.pop();
        POLY3D& face = model.polys[faces[static_cast<std::size_t>(place)]];
        if ((face.state_flags & to_propagate) == 0) {
            continue; // met at another of its places
        }
        const int n = face.verts.GetSize();
        for (int k = 0; k < n; ++k) {
            int pair[2] = {face.verts[k], face.verts[k + 1 < n ? k + 1 : 0]};
            const int other = places.first_not_oriented(model, faces, pair[0], pair[1]);
            if (other >= 0) {
                POLY3D& neighbour = model.polys[faces[static_cast<std::size_t>(other)]];
                if (neighbour.det_poly_include_line(pair) == 1) {
                    neighbour.invert_poly_range();
                }
                orient(other, place);
            }
        }
        face.state_flags &= ~to_propagate;
    }

    model.bodies[body].volume = body_volume(model, model.bodies[body]);
    if (model.bodies[body].volume < 0) {
        for (const int f : faces) {
            model.polys[f].invert_poly_range();
            model.polys[f].set_poly_eql(model.verts);
        }
    }
}

double body_volume(TMOD3D& model, const BODY3D& body) {
    constexpr double one_sixth = 0.16666666666666666;
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

PairPlaces::PairPlaces(const TMOD3D& model, const std::vector<int>& faces)
    : pair_numbers_(static_cast<int>(faces.size()) / 2 * 3) {
    std::vector<int> pair_of_entry;
    std::vector<int> place_of_entry;
    std::vector<int> sizes;
    for (std::size_t place = 0; place < faces.size(); ++place) {
        const CArray<int>& verts = model.polys[faces[place]].verts;
        for (int k = 0; k < verts.GetSize(); ++k) {
            const int next = verts[k + 1 < verts.GetSize() ? k + 1 : 0];
            const int fresh = static_cast<int>(sizes.size());
            const int pair = pair_numbers_.find_or_add(korvel::side_key(verts[k], next), fresh);
            if (pair == fresh) {
                sizes.push_back(0);
            }
            ++sizes[static_cast<std::size_t>(pair)];
            pair_of_entry.push_back(pair);
            place_of_entry.push_back(static_cast<int>(place));
        }
    }
    int start = 0;
    for (const int size : sizes) {
        next_.push_back(start);
        ends_.push_back(start);
        start += size;
    }
    places_.resize(static_cast<std::size_t>(start));
    for (std::size_t entry = 0; entry < pair_of_entry.size(); ++entry) {
        int& end = ends_[static_cast<std::size_t>(pair_of_entry[entry])];
        places_[static_cast<std::size_t>(end++)] = place_of_entry[entry];
    }
}

std::vector<int> next_places_of_same_face(const std::vector<int>& faces) {
    std::vector<int> next(faces.size(), -1);
    std::vector<int> last(faces.size(), -1); // of the places so far, by the first one
    korvel::FirstIndex first_place(static_cast<int>(faces.size()));
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const int place = static_cast<int>(i);
        const int first = first_place.find_or_add(korvel::pair_key(0, faces[i]), place);
        const int before = std::exchange(last[static_cast<std::size_t>(first)], place);
        if (before >= 0) {
            next[static_cast<std::size_t>(before)] = place;
        }
    }
    return next;
}

int PairPlaces::first_not_oriented(const TMOD3D& model, const std::vector<int>& faces, int a,
                                   int b) {
    const int pair = pair_numbers_.find(korvel::side_key(a, b));
    if (pair < 0) {
        return -1;
    }
    int& next = next_[static_cast<std::size_t>(pair)];
    for (; next < ends_[static_cast<std::size_t>(pair)]; ++next) {
        const int place = places_[static_cast<std::size_t>(next)];
        const int face = faces[static_cast<std::size_t>(place)];
        if ((model.polys[face].state_flags & not_oriented) != 0) {
            return place;
        }
    }
    return -1;
}

} // namespace
