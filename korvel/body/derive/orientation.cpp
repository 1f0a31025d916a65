// The orientation of the bodies' faces, and the volumes that decide on it.

#include "korvel/body/derive/orientation.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "korvel/base/indices.h"
#include "korvel/body/derive/orientable_faces.h"
#include "korvel/body/derive/orientation_walk.h"
#include "korvel/platform/check_point.h"

namespace korvel {
namespace {

constexpr double one_sixth = 0.16666666666666666;

struct Outcome {
    double volume = 0; ///< of the faces as they run in the end
    bool any_turned = false;
};

std::vector<int> listed_faces(const BODY3D& body, int faces);
bool is_whole_model(const std::vector<int>& listed, int faces);

template <class Faces>
Outcome orient(const std::vector<int>& listed, Faces faces);
template <class Faces>
Outcome store(const OrientationWalk& walk, const std::vector<int>& listed, Faces faces);
template <class Faces>
double sum_of_volumes(const std::vector<int>& listed, const Faces& faces);

/// `orient_listed(listed)` orients the faces of one body. Its volume is final unless a later body
/// has turned faces, which the two may share.
template <class Faces, class OrientListed>
void orient_each(TMOD3D& model, Faces faces, OrientListed orient_listed) {
    int stale_volumes = 0;
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        const Outcome outcome = orient_listed(listed_faces(model.bodies[b], faces.size()));
        model.bodies[b].volume = outcome.volume;
        if (outcome.any_turned) {
            stale_volumes = b;
        }
        check_point_after(b, model.bodies.GetSize(), 64, "orienting bodies");
    }
    for (int b = 0; b < stale_volumes; ++b) {
        model.bodies[b].volume =
            sum_of_volumes(listed_faces(model.bodies[b], faces.size()), faces) * one_sixth;
    }
}

} // namespace

void orient_body(TMOD3D& model, int body) {
    const RecordFaces faces(model);
    model.bodies[body].volume =
        orient(listed_faces(model.bodies[body], faces.size()), faces).volume;
}

void orient_bodies(TMOD3D& model) {
    const RecordFaces faces(model);
    orient_each(model, faces,
                [&](const std::vector<int>& listed) { return orient(listed, faces); });
}

void orient_bodies(TMOD3D& model, FlatModel& flat, const std::vector<int>& side_edges) {
    const FlatFaces faces(flat);
    orient_each(model, faces, [&](const std::vector<int>& listed) {
        // The edges' numbers serve only while no other body has turned faces.
        if (model.bodies.GetSize() == 1 && is_whole_model(listed, faces.size())) {
            OrientationWalk walk(listed, flat.face_verts, side_edges);
            walk.run();
            return store(walk, listed, faces);
        }
        return orient(listed, faces);
    });
}

double body_volume(TMOD3D& model, const BODY3D& body) {
    return sum_of_volumes(listed_faces(body, model.polys.GetSize()), RecordFaces(model)) *
           one_sixth;
}

namespace {

/// The faces that a body lists and that exist. Other entries of its list take no part.
std::vector<int> listed_faces(const BODY3D& body, int faces) {
    std::vector<int> listed;
    listed.reserve(static_cast<std::size_t>(body.polys.GetSize()));
    std::copy_if(begin(body.polys), end(body.polys), std::back_inserter(listed),
                 [=](int f) { return f >= 0 && f < faces; });
    return listed;
}

/// Whether a list contains all faces, each once and in order.
bool is_whole_model(const std::vector<int>& listed, int faces) {
    int next = 0;
    return static_cast<int>(listed.size()) == faces &&
           std::all_of(listed.begin(), listed.end(), [&](int f) { return f == next++; });
}

template <class Faces>
Outcome orient(const std::vector<int>& listed, Faces faces) {
    if (listed.empty()) {
        return {};
    }
    PackedLists verts;
    verts.reserve(static_cast<int>(listed.size()), 3 * listed.size());
    std::vector<IndexPair> sides;
    sides.reserve(3 * listed.size());
    for (const int f : listed) {
        const auto face = faces.verts(f);
        for (std::size_t k = 0; k < face.size(); ++k) {
            verts.add(face[k]);
            sides.push_back({face[k], k + 1 < face.size() ? face[k + 1] : face[0]});
        }
        verts.end_list();
    }
    const std::vector<int> kinds = first_equal_pairs(sides);
    OrientationWalk walk(listed, verts, kinds);
    walk.run();
    return store(walk, listed, faces);
}

/// Marks the faces and turns those that the walk has turned, and then all of them when the volume
/// is negative.
template <class Faces>
Outcome store(const OrientationWalk& walk, const std::vector<int>& listed, Faces faces) {
    std::vector<char> is_done(walk.any_repeated() ? listed.size() : 0, 0);
    double sum = 0;
    double turned_sum = 0;
    for (int position = 0; position < static_cast<int>(listed.size()); ++position) {
        const int f = listed[position];
        faces.mark(f, walk.is_oriented(position));
        const int next = walk.next_position(position);
        if (walk.is_turned(position)) {
            // Once for each face, at its first position.
            if (is_done.empty() || is_done[position] == 0) {
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
        return {sum * one_sixth, walk.any_turned()};
    }

    // At each position, so that a face that is listed twice is turned twice.
    for (const int f : listed) {
        faces.turn(f);
    }
    if (walk.any_repeated()) {
        turned_sum = sum_of_volumes(listed, faces);
    }
    return {turned_sum * one_sixth, true};
}

template <class Faces>
double sum_of_volumes(const std::vector<int>& listed, const Faces& faces) {
    double sum = 0;
    for (const int f : listed) {
        sum += faces.volume(f);
    }
    return sum;
}

} // namespace
} // namespace korvel
