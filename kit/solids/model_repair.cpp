#include "kit/solids/model_repair.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "kit/base/points.h"
#include "kit/solids/own_orientation.h"
#include "kit/solids/surface.h"

namespace korvel::kit {
namespace {

int drop_folded_faces(TMOD3D& model);
int drop_twins(TMOD3D& model);
int join_equal_vertices(TMOD3D& model);
void drop_unused(FileContents& contents, std::vector<Repair>& out);
int turn_faces(TMOD3D& model);
bool is_folded(const POLY3D& face);
template <class Keep>
int keep_entries(CArray<int>& list, Keep keep);

} // namespace

void repair_model(FileContents& contents, std::vector<Repair>& out) {
    TMOD3D& model = contents.model;
    const int folded = drop_folded_faces(model);
    int twins = drop_twins(model);
    const int joined = join_equal_vertices(model);
    // Joining may fold faces and make others equal.
    const int folded_by_joining = joined > 0 ? drop_folded_faces(model) : 0;
    twins += joined > 0 ? drop_twins(model) : 0;
    note_repair("faces with a vertex twice removed", folded + folded_by_joining, out);
    note_repair("faces that a body has twice removed", twins, out);
    note_repair("vertices at the position of another joined to it", joined, out);
    drop_unused(contents, out);
    note_repair("faces turned outward", turn_faces(model), out);
}

void write_model_file(const FileContents& contents, FILE* out) {
    constexpr int most_in_line = 20;
    const TMOD3D& model = contents.model;
    std::fprintf(out, "%d\n", model.verts.GetSize());
    for (const VERT3D& vertex : model.verts) {
        std::fprintf(out, "%s %s %s \n", file_digits(vertex.model_xyz[0]).c_str(),
                     file_digits(vertex.model_xyz[1]).c_str(),
                     file_digits(vertex.model_xyz[2]).c_str());
    }
    std::fprintf(out, "%d\n", model.polys.GetSize());
    for (const POLY3D& face : model.polys) {
        std::fprintf(out, "%d %d %d \n", face.verts[0], face.verts[1], face.verts[2]);
    }
    std::fprintf(out, "%d\n", model.bodies.GetSize());
    for (const BODY3D& body : model.bodies) {
        std::fprintf(out, "%d\n%s %s %s\n", body.polys.GetSize(), file_digits(body.param_1).c_str(),
                     file_digits(body.param_2).c_str(), file_digits(body.param_3).c_str());
        for (int k = 0; k < body.polys.GetSize(); ++k) {
            std::fprintf(out, "%d %s", body.polys[k], (k + 1) % most_in_line == 0 ? "\n" : "");
        }
        std::fprintf(out, "\n");
    }
}

namespace {

// The edges of a face with a vertex twice cancel out, so that a body is as closed without it.
// Returns how many bodies listed, each face once.
int drop_folded_faces(TMOD3D& model) {
    std::vector<bool> is_dropped(static_cast<std::size_t>(model.polys.GetSize()), false);
    for (BODY3D& body : model.bodies) {
        keep_entries(body.polys, [&](int face) {
            const bool goes = is_folded(model.polys[face]);
            is_dropped[static_cast<std::size_t>(face)] =
                is_dropped[static_cast<std::size_t>(face)] || goes;
            return !goes;
        });
    }
    return static_cast<int>(std::count(is_dropped.begin(), is_dropped.end(), true));
}

// Two equal faces of a closed body are a wall of no thickness; without both it stays closed.
int drop_twins(TMOD3D& model) {
    const std::vector<Surface> all = surfaces(model);
    int dropped = 0;
    for (int index = 0; index < model.bodies.GetSize(); ++index) {
        BODY3D& body = model.bodies[index];
        std::map<std::array<int, 3>, int> counts;
        for (const int face : body.polys) {
            ++counts[sorted_corners(model.polys[face])];
        }
        const bool is_closed = all[static_cast<std::size_t>(index)].is_closed();
        for (auto& [corners, count] : counts) {
            count = is_closed ? count % 2 : 1;
        }
        dropped += keep_entries(
            body.polys, [&](int face) { return counts[sorted_corners(model.polys[face])]-- > 0; });
    }
    return dropped;
}

// A body of faces that each have their own vertices is open everywhere.
int join_equal_vertices(TMOD3D& model) {
    const std::vector<Surface> all = surfaces(model);
    std::vector<bool> is_open(static_cast<std::size_t>(model.verts.GetSize()), false);
    for (int body = 0; body < model.bodies.GetSize(); ++body) {
        if (all[static_cast<std::size_t>(body)].open_edges > 0) {
            for (const int face : model.bodies[body].polys) {
                for (const int vertex : model.polys[face].verts) {
                    is_open[static_cast<std::size_t>(vertex)] = true;
                }
            }
        }
    }
    std::map<Point3, int> firsts;
    std::vector<int> numbers;
    int joined = 0;
    for (int vertex = 0; vertex < model.verts.GetSize(); ++vertex) {
        numbers.push_back(vertex);
        if (is_open[static_cast<std::size_t>(vertex)]) {
            const auto first =
                firsts.try_emplace(to_point(model.verts[vertex].model_xyz), vertex).first;
            numbers.back() = first->second;
            joined += first->second != vertex ? 1 : 0;
        }
    }
    for (POLY3D& face : model.polys) {
        for (int& vertex : face.verts) {
            vertex = numbers[static_cast<std::size_t>(vertex)];
        }
    }
    return joined;
}

void drop_unused(FileContents& contents, std::vector<Repair>& out) {
    TMOD3D& model = contents.model;
    const int bodies = model.bodies.GetSize();
    const int faces = model.polys.GetSize();
    const int vertices = model.verts.GetSize();
    std::vector<bool> is_used;
    for (const BODY3D& body : model.bodies) {
        is_used.push_back(!body.polys.IsEmpty());
    }
    const std::vector<int> body_numbers =
        keep_records(is_used, model.bodies, contents.lines.wholes);
    for (std::size_t body = 0; body < contents.names.size(); ++body) {
        if (body_numbers[body] >= 0) {
            contents.names[static_cast<std::size_t>(body_numbers[body])] = contents.names[body];
        }
    }
    contents.names.resize(
        std::min(contents.names.size(), static_cast<std::size_t>(model.bodies.GetSize())));
    is_used.assign(static_cast<std::size_t>(faces), false);
    for (const BODY3D& body : model.bodies) {
        for (const int face : body.polys) {
            is_used[static_cast<std::size_t>(face)] = true;
        }
    }
    const std::vector<int> face_numbers = keep_records(is_used, model.polys, contents.lines.parts);
    for (BODY3D& body : model.bodies) {
        renumber(face_numbers, body.polys);
    }
    is_used.assign(static_cast<std::size_t>(vertices), false);
    for (const POLY3D& face : model.polys) {
        for (const int vertex : face.verts) {
            is_used[static_cast<std::size_t>(vertex)] = true;
        }
    }
    const std::vector<int> numbers = keep_records(is_used, model.verts, contents.lines.points);
    for (POLY3D& face : model.polys) {
        renumber(numbers, face.verts);
    }
    note_repair("bodies without faces removed", bodies - model.bodies.GetSize(), out);
    note_repair("faces of no body removed", faces - model.polys.GetSize(), out);
    note_repair("vertices of no face removed", vertices - model.verts.GetSize(), out);
}

// A wall between two bodies is outward for one of them only.
int turn_faces(TMOD3D& model) {
    const std::vector<Surface> all = surfaces(model);
    const auto faces = static_cast<std::size_t>(model.polys.GetSize());
    std::vector<bool> is_outward(faces, false);
    std::vector<bool> is_inward(faces, false);
    for (int index = 0; index < model.bodies.GetSize(); ++index) {
        if (!all[static_cast<std::size_t>(index)].is_closed()) {
            continue;
        }
        const std::vector<int> turns = own_orientation(model, index).turns;
        for (std::size_t k = 0; k < turns.size(); ++k) {
            const int face = model.bodies[index].polys[static_cast<int>(k)];
            if (turns[k] != 0) {
                (turns[k] > 0 ? is_outward : is_inward)[static_cast<std::size_t>(face)] = true;
            }
        }
    }
    int turned = 0;
    for (std::size_t face = 0; face < faces; ++face) {
        if (is_inward[face] && !is_outward[face]) {
            CArray<int>& corners = model.polys[static_cast<int>(face)].verts;
            std::swap(corners[1], corners[2]);
            ++turned;
        }
    }
    return turned;
}

bool is_folded(const POLY3D& face) {
    const std::array<int, 3> ascending = sorted_corners(face);
    return ascending[0] == ascending[1] || ascending[1] == ascending[2];
}

template <class Keep>
int keep_entries(CArray<int>& list, Keep keep) {
    int kept = 0;
    for (const int entry : list) {
        if (keep(entry)) {
            list[kept++] = entry;
        }
    }
    const int dropped = list.GetSize() - kept;
    list.SetSize(kept);
    return dropped;
}

} // namespace
} // namespace korvel::kit
