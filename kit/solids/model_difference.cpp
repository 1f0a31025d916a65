#include "kit/solids/model_difference.h"

#include <algorithm>
#include <numeric>
#include <span>

#include "kit/solids/exact.h"
#include "kit/solids/kept_members.h"

namespace korvel::kit {
namespace {

bool joins(const LINE3D& edge, const LINE3D& same, bool is_reversed);
int edge_like(const TMOD3D& model, const LINE3D& edge);
LINE3D turned_around(const LINE3D& edge, const TMOD3D& model);
void turn_around(LINE3D& edge, const TMOD3D& model);
int renumbered(int edge, const std::vector<int>& numbers);
std::vector<int> renumbered(const CArray<int>& edges, const std::vector<int>& numbers);
bool is_renumbered(const CArray<int>& from, const CArray<int>& to, const std::vector<int>& numbers);
bool has_edges(const VERT3D& vertex, int v, std::vector<int> edges, const TMOD3D& model);
void set_edges(VERT3D& vertex, int v, const std::vector<int>& numbers, const TMOD3D& model);
int other_end(const LINE3D& edge, int v);
void renumber_edges(CArray<int>& edges, const std::vector<int>& numbers);
void assign_entries(CArray<int>& list, const std::vector<int>& entries);
void copy_body(const BODY3D& from, BODY3D& to);
template <class Records>
std::size_t bytes_of_records(const Records& records);

} // namespace

std::pair<ModelDifference, ModelDifference> ModelDifference::between(const TMOD3D& here,
                                                                     const TMOD3D& there) {
    std::vector<EdgeRun> runs = equal_edges(here, there);
    std::vector<EdgeRun> back;
    back.reserve(runs.size());
    for (const EdgeRun& run : runs) {
        back.push_back({run.to, run.from, run.count, run.is_reversed});
    }
    std::ranges::sort(back, {}, &EdgeRun::to);
    return {ModelDifference(here, there, std::move(runs)),
            ModelDifference(there, here, std::move(back))};
}

// Mostly edges are in nearly the same order, so that a search is needed only where a run ends.
std::vector<ModelDifference::EdgeRun> ModelDifference::equal_edges(const TMOD3D& here,
                                                                   const TMOD3D& there) {
    const auto goes_on_with = [&](const EdgeRun& run, int to) {
        const int from = run.from + run.count;
        return run.to + run.count == to && from < here.lines.GetSize() &&
               joins(here.lines[from], there.lines[to], run.is_reversed);
    };
    std::vector<EdgeRun> runs;
    std::vector<bool> is_taken(static_cast<std::size_t>(here.lines.GetSize()), false);
    for (int to = 0; to < there.lines.GetSize(); ++to) {
        const bool goes_on = !runs.empty() && goes_on_with(runs.back(), to);
        const int from =
            goes_on ? runs.back().from + runs.back().count : edge_like(here, there.lines[to]);
        if (from < 0 || is_taken[static_cast<std::size_t>(from)]) {
            continue;
        }
        is_taken[static_cast<std::size_t>(from)] = true;
        if (goes_on) {
            ++runs.back().count;
        } else {
            runs.push_back({from, to, 1, !joins(here.lines[from], there.lines[to], false)});
        }
    }
    return runs;
}

ModelDifference::Numbers ModelDifference::numbers(const std::vector<EdgeRun>& runs, int edges) {
    Numbers numbers(static_cast<std::size_t>(edges), -1);
    for (const EdgeRun& run : runs) {
        const auto first = numbers.begin() + run.from;
        std::iota(first, first + run.count, run.to);
    }
    return numbers;
}

ModelDifference::ModelDifference(const TMOD3D& from, const TMOD3D& to, std::vector<EdgeRun> runs)
    : verts_(to.verts.GetSize()), edges_(to.lines.GetSize()), faces_(to.polys.GetSize()),
      runs_(std::move(runs)) {
    const Numbers numbers = ModelDifference::numbers(runs_, from.lines.GetSize());
    compare_vertices(from, to, numbers);
    compare_edges(from, to);
    compare_faces(from, to, numbers);
    compare_bodies(from, to, numbers);
    copy_bounds(to, bounds_);
}

void ModelDifference::compare_vertices(const TMOD3D& from, const TMOD3D& to,
                                       const Numbers& numbers) {
    for (int v = 0; v < to.verts.GetSize(); ++v) {
        const VERT3D& made = to.verts[v];
        if (v < from.verts.GetSize() &&
            have_same(from.verts[v], made, &VERT3D::model_xyz, &VERT3D::backup_xyz,
                      &VERT3D::temp_view_xyz, &VERT3D::spare_int_1, &VERT3D::spare_int_2,
                      &VERT3D::spare_int_3, &VERT3D::faces, &VERT3D::bodies) &&
            has_edges(made, v, renumbered(from.verts[v].lines, numbers), to)) {
            Marks::add(marks_,
                       {Marks::vertex_marks, v, 1, from.verts[v].state_flags ^ made.state_flags});
        } else {
            vert_records_.push_back({v, made});
        }
    }
}

void ModelDifference::compare_edges(const TMOD3D& from, const TMOD3D& to) {
    int next = 0;
    const auto replace_up_to = [&](int end) {
        for (; next < end; ++next) {
            edge_records_.push_back({next, to.lines[next]});
        }
    };
    const auto is_equal = [](const LINE3D& edge, const LINE3D& made) {
        return have_same(edge, made, &LINE3D::start_vert, &LINE3D::end_vert, &LINE3D::direction,
                         &LINE3D::length, &LINE3D::main_axis, &LINE3D::faces, &LINE3D::bodies);
    };
    for (const EdgeRun& run : runs_) {
        for (int i = 0; i < run.count; ++i) {
            const LINE3D& edge = from.lines[run.from + i];
            const LINE3D& made = to.lines[run.to + i];
            if (run.is_reversed ? is_equal(turned_around(edge, from), made)
                                : is_equal(edge, made)) {
                replace_up_to(run.to + i);
                Marks::add(marks_,
                           {Marks::edge_marks, next++, 1, edge.state_flags ^ made.state_flags});
            }
        }
    }
    replace_up_to(to.lines.GetSize());
}

void ModelDifference::compare_faces(const TMOD3D& from, const TMOD3D& to, const Numbers& numbers) {
    for (int f = 0; f < to.polys.GetSize(); ++f) {
        const POLY3D& made = to.polys[f];
        if (f < from.polys.GetSize() &&
            have_same(from.polys[f], made, &POLY3D::verts, &POLY3D::bodies, &POLY3D::area,
                      &POLY3D::plane, &POLY3D::main_axis) &&
            is_renumbered(from.polys[f].lines, made.lines, numbers)) {
            if (!is_same_value(from.polys[f].neighbour_faces, made.neighbour_faces)) {
                neighbour_lists_.push_back({f, {}});
                neighbour_lists_.back().record.Copy(made.neighbour_faces);
            }
            Marks::add(marks_,
                       {Marks::face_marks, f, 1, from.polys[f].state_flags ^ made.state_flags});
        } else {
            face_records_.push_back({f, made});
        }
    }
}

void ModelDifference::compare_bodies(const TMOD3D& from, const TMOD3D& to, const Numbers& numbers) {
    std::vector<int> places(
        static_cast<std::size_t>(std::max({verts_, edges_, faces_, to.bodies.GetSize()})));
    for (int b = 0; b < to.bodies.GetSize(); ++b) {
        if (!have_same(from.bodies[b], to.bodies[b], &BODY3D::volume, &BODY3D::body_flags,
                       &BODY3D::model_min, &BODY3D::model_max, &BODY3D::view_mid,
                       &BODY3D::view_span, &BODY3D::view_min, &BODY3D::view_max,
                       &BODY3D::change_dirt)) {
            body_records_.push_back({b, {}});
            copy_body(to.bodies[b], body_records_.back().record);
        }
        compare_lists(b, from.bodies[b], to, numbers, places);
    }
}

void ModelDifference::compare_lists(int body, const BODY3D& from, const TMOD3D& to,
                                    const Numbers& numbers, std::vector<int>& places) {
    const BODY3D& made = to.bodies[body];
    if (have_same(from, made, &BODY3D::polys, &BODY3D::verts, &BODY3D::neighbour_bodies) &&
        is_renumbered(from.lines, made.lines, numbers)) {
        return;
    }
    const auto difference = [&](const CArray<int>& before, const CArray<int>& behind) {
        return ListDifference(span_of(before), span_of(behind), places);
    };
    body_lists_.push_back(
        {body, difference(from.polys, made.polys),
         ListDifference(renumbered(from.lines, numbers), span_of(made.lines), places),
         difference(from.verts, made.verts),
         difference(from.neighbour_bodies, made.neighbour_bodies)});
}

void ModelDifference::apply(TMOD3D& model) const {
    const Numbers numbers = ModelDifference::numbers(runs_, model.lines.GetSize());
    apply_to_edges(model);
    model.verts.SetSize(verts_);
    for (int v = 0; v < verts_; ++v) {
        set_edges(model.verts[v], v, numbers, model);
    }
    model.polys.SetSize(faces_);
    for (POLY3D& face : model.polys) {
        renumber_edges(face.lines, numbers);
    }
    apply_to_bodies(model, numbers);
    for (const auto& [index, record] : vert_records_) {
        model.verts[index] = record;
    }
    for (const auto& [index, record] : face_records_) {
        model.polys[index] = record;
    }
    for (const auto& [index, list] : neighbour_lists_) {
        model.polys[index].neighbour_faces.Copy(list);
    }
    change_marks(marks_, model);
    copy_bounds(bounds_, model);
}

void ModelDifference::apply_to_edges(TMOD3D& model) const {
    CArray<LINE3D, LINE3D&> made;
    made.SetSize(edges_);
    for (const EdgeRun& run : runs_) {
        for (int i = 0; i < run.count; ++i) {
            LINE3D& edge = made[run.to + i];
            edge = std::move(model.lines[run.from + i]);
            if (run.is_reversed) {
                turn_around(edge, model);
            }
        }
    }
    model.lines = std::move(made);
    for (const auto& [index, record] : edge_records_) {
        model.lines[index] = record;
    }
}

void ModelDifference::apply_to_bodies(TMOD3D& model, const Numbers& numbers) const {
    for (const auto& [index, record] : body_records_) {
        copy_body(record, model.bodies[index]);
    }
    auto changed = body_lists_.begin();
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        BODY3D& body = model.bodies[b];
        if (changed == body_lists_.end() || changed->body != b) {
            renumber_edges(body.lines, numbers);
            continue;
        }
        assign_entries(body.polys, changed->polys.applied(span_of(body.polys)));
        assign_entries(body.lines, changed->lines.applied(renumbered(body.lines, numbers)));
        assign_entries(body.verts, changed->verts.applied(span_of(body.verts)));
        assign_entries(body.neighbour_bodies,
                       changed->neighbour_bodies.applied(span_of(body.neighbour_bodies)));
        ++changed;
    }
}

std::size_t ModelDifference::bytes() const {
    std::size_t sum = runs_.capacity() * sizeof(EdgeRun) + bytes_of_records(vert_records_) +
                      bytes_of_records(edge_records_) + bytes_of_records(face_records_) +
                      bytes_of_records(neighbour_lists_) + bytes_of_records(body_records_) +
                      bytes_of(marks_);
    for (const BodyLists& lists : body_lists_) {
        sum += sizeof(BodyLists) + lists.polys.bytes() + lists.lines.bytes() + lists.verts.bytes() +
               lists.neighbour_bodies.bytes();
    }
    return sum;
}

namespace {

bool joins(const LINE3D& edge, const LINE3D& same, bool is_reversed) {
    return is_reversed ? edge.start_vert == same.end_vert && edge.end_vert == same.start_vert
                       : edge.start_vert == same.start_vert && edge.end_vert == same.end_vert;
}

/// The model's edge with the same ends, in either order, or −1.
int edge_like(const TMOD3D& model, const LINE3D& edge) {
    if (edge.start_vert < 0 || edge.start_vert >= model.verts.GetSize()) {
        return -1;
    }
    for (const int e : model.verts[edge.start_vert].lines) {
        if (joins(model.lines[e], edge, false) || joins(model.lines[e], edge, true)) {
            return e;
        }
    }
    return -1;
}

LINE3D turned_around(const LINE3D& edge, const TMOD3D& model) {
    LINE3D made = edge;
    turn_around(made, model);
    return made;
}

void turn_around(LINE3D& edge, const TMOD3D& model) {
    std::swap(edge.start_vert, edge.end_vert);
    edge.set_line_eqt(operand(model).verts);
}

/// What is no edge stays.
int renumbered(int edge, const std::vector<int>& numbers) {
    const auto index = static_cast<std::size_t>(edge);
    return index < numbers.size() ? numbers[index] : edge;
}

std::vector<int> renumbered(const CArray<int>& edges, const std::vector<int>& numbers) {
    std::vector<int> made(edges.begin(), edges.end());
    for (int& e : made) {
        e = renumbered(e, numbers);
    }
    return made;
}

bool is_renumbered(const CArray<int>& from, const CArray<int>& to,
                   const std::vector<int>& numbers) {
    return std::equal(from.begin(), from.end(), to.begin(), to.end(), [&](int before, int behind) {
        return renumbered(before, numbers) == behind;
    });
}

// A vertex has its edges ascending, and its neighbours in their order.

/// `edges` are in any order.
bool has_edges(const VERT3D& vertex, int v, std::vector<int> edges, const TMOD3D& model) {
    std::ranges::sort(edges);
    return std::ranges::equal(span_of(vertex.lines), edges) &&
           std::ranges::equal(span_of(vertex.neighbours), edges, {}, {},
                              [&](int e) { return other_end(model.lines[e], v); });
}

/// A vertex that loses an edge gets a whole record later.
void set_edges(VERT3D& vertex, int v, const std::vector<int>& numbers, const TMOD3D& model) {
    renumber_edges(vertex.lines, numbers);
    std::sort(vertex.lines.begin(), vertex.lines.end());
    if (vertex.neighbours.GetSize() == vertex.lines.GetSize()) {
        std::transform(vertex.lines.begin(), vertex.lines.end(), vertex.neighbours.begin(),
                       [&](int e) { return e < 0 ? -1 : other_end(model.lines[e], v); });
    }
}

int other_end(const LINE3D& edge, int v) {
    return edge.start_vert == v ? edge.end_vert : edge.start_vert;
}

void renumber_edges(CArray<int>& edges, const std::vector<int>& numbers) {
    for (int& e : edges) {
        e = renumbered(e, numbers);
    }
}

void assign_entries(CArray<int>& list, const std::vector<int>& entries) {
    list.SetSize(static_cast<int>(entries.size()));
    std::copy(entries.begin(), entries.end(), list.begin());
}

/// All that is derived but the lists.
void copy_body(const BODY3D& from, BODY3D& to) {
    copy_members(from, to, &BODY3D::volume, &BODY3D::body_flags);
    copy_span(from, to);
}

template <class Records>
std::size_t bytes_of_records(const Records& records) {
    return records.capacity() * sizeof(typename Records::value_type);
}

} // namespace
} // namespace korvel::kit
