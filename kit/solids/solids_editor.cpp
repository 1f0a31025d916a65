#include "kit/solids/solids_editor.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "kit/base/error.h"
#include "kit/solids/collision.h"
#include "kit/solids/exact.h"
#include "kit/solids/settled_orientation.h"
#include "kit/solids/undo.h"

namespace korvel::kit {
namespace {

void add_faces_and_edges_at_vertices(TMOD3D& model);
std::optional<Verdict> coordinate_out_of_range(const TMOD3D& model);
Verdict verdict_on(const TMOD3D& model, const Collision& collision);

} // namespace

SolidsEditor::SolidsEditor(Solids solids)
    : solids_(std::move(solids)), undo_(std::make_unique<Undo>(solids_.model())),
      orientation_(std::make_unique<SettledOrientation>()) {}

SolidsEditor::~SolidsEditor() = default;
SolidsEditor::SolidsEditor(SolidsEditor&&) noexcept = default;
SolidsEditor& SolidsEditor::operator=(SolidsEditor&&) noexcept = default;

const Solids& SolidsEditor::solids() {
    bring_up_to_date();
    return solids_;
}

void SolidsEditor::prepare() {
    orientation_->prepare(model());
}

Solids SolidsEditor::take() {
    bring_up_to_date();
    return std::move(solids_);
}

void SolidsEditor::set_view(const ViewAngles& angles) {
    bring_up_to_date();
    solids_.set_view(angles);
}

std::optional<Pick> SolidsEditor::pick(double u, double v, const std::set<int>& hidden) {
    bring_up_to_date();
    selected_.pick = kit::pick(model(), u, v, hidden);
    return selected_.pick;
}

void SolidsEditor::gather_body(int body) {
    bring_up_to_date();
    if (body < 0 || body >= solids_.size() || solids_[body].vertices().empty()) {
        throw input_error("body " + std::to_string(body) + " has no face, there is nothing to move",
                          {.value = std::to_string(body)});
    }
    model().set_body_as_relat(body);
    const bool is_picked = selected_.pick && selected_.pick->body == body;
    model().edit_state[edit_picked_vertex] =
        is_picked ? selected_.pick->vertex : model().relat_list_2[0];
    model().edit_state[edit_picked_body] = body;
    add_faces_and_edges_at_vertices(model());
    selected_.body = body;
}

void SolidsEditor::gather_vertex(int vertex, int depth) {
    bring_up_to_date();
    if (vertex < 0 || vertex >= solids_.vertex_count() || depth < 0) {
        throw input_error("there is no vertex " + std::to_string(vertex) + ", or the depth of " +
                              std::to_string(depth) + " is negative",
                          {.value = std::to_string(vertex)});
    }
    model().edit_state[edit_picked_vertex] = vertex;
    model().edit_state[edit_neighbourhood_depth] = depth;
    const CArray<int>& bodies = model().verts[vertex].bodies;
    model().edit_state[edit_picked_body] = bodies.IsEmpty() ? 0 : bodies[0];
    model().set_rel_triangle_vert();
    selected_.body.reset();
}

void SolidsEditor::gather_all() {
    bring_up_to_date();
    model().set_all_body_as_relat();
    selected_.body.reset();
}

std::span<const int> SolidsEditor::vertices() const {
    return span_of(model().relat_list_2);
}

std::span<const int> SolidsEditor::edges() const {
    return span_of(model().relat_list_3);
}

std::span<const int> SolidsEditor::faces() const {
    return span_of(model().relat_list_1);
}

bool SolidsEditor::is_faded() const {
    return model().relat_list_4.GetSize() > 1; // a body has no levels
}

bool SolidsEditor::can_fade() const {
    const std::span<const int> gathered = vertices();
    return !is_faded() || std::any_of(gathered.begin(), gathered.end(), [&](int v) {
        return solids_.vertex(v) != solids_.vertex(gathered.front());
    });
}

std::span<const double> SolidsEditor::weigh() {
    model().mut_weight();
    return {model().mut_weights.begin(), vertices().size()};
}

void SolidsEditor::move(const Point3& by) {
    begin_move();
    if (is_faded()) {
        change(korvel::move_by_weight, by);
    } else {
        const double* const at = model().verts[model().edit_state[edit_picked_vertex]].view_xyz;
        change(move_picked_onto_point, {at[0] + by[0], at[1] + by[1], 0});
    }
    change(korvel::move_in_depth, by);
}

void SolidsEditor::move_onto(const Point2& place) {
    begin_move();
    change(move_onto_point, {place[0], place[1], 0});
}

void SolidsEditor::move_picked_onto(const Point2& place) {
    begin_move();
    change(move_picked_onto_point, {place[0], place[1], 0});
}

void SolidsEditor::scale(const Point2& from, const Point2& to) {
    if (!selected_.body) {
        throw input_error("no body is gathered, there is nothing to scale");
    }
    begin_move();
    model().edit_state[edit_scaled_body] = *selected_.body;
    Point3 grabbed = {from[0], from[1], 0};
    model().get_body_span(*selected_.body);
    model().get_body_change_dirt(*selected_.body, grabbed.data());
    change(move_scale_box, {to[0], to[1], 0}, grabbed);
}

void SolidsEditor::move_by_weight(const Point2& by) {
    begin_move();
    change(korvel::move_by_weight, {by[0], by[1], 0});
}

void SolidsEditor::move_in_depth_with_weights(double by) {
    begin_move();
    change(korvel::move_in_depth_with_weights, {0, 0, by});
}

void SolidsEditor::move_in_depth(double by) {
    begin_move();
    change(korvel::move_in_depth, {0, 0, by});
}

void SolidsEditor::begin_move() {
    if (vertices().empty()) {
        throw input_error("nothing is gathered, there is nothing to move");
    }
    if (!std::exchange(is_replacing_, false)) {
        bring_up_to_date();
        undo_->keep_move(selected_, model());
    }
}

void SolidsEditor::move_instead(const std::function<void(SolidsEditor&)>& move) {
    if (is_current_ || !undo_->restore_before_move(model())) {
        undo();
        move(*this);
        return;
    }
    is_current_ = true;
    is_replacing_ = true;
    try {
        move(*this);
    } catch (...) {
        end_replacing();
        throw;
    }
    end_replacing();
}

// The record was not taken over by a move.
void SolidsEditor::end_replacing() {
    if (std::exchange(is_replacing_, false)) {
        undo_->drop_restored(model());
    }
}

void SolidsEditor::change(int mode, Point3 p, Point3 q) {
    model().change_mut_points(mode, p.data(), q.data());
    is_current_ = false;
}

// After a move, before orientation and volumes are brought up to date.
Verdict SolidsEditor::judge(const Context& context) {
    if (const auto verdict = coordinate_out_of_range(model())) {
        return *verdict;
    }
    const auto collision = first_collision(model(), context);
    return collision ? verdict_on(model(), *collision) : Verdict();
}

bool SolidsEditor::insert_on_face() {
    return insert(&TMOD3D::insert_point_on_poly);
}

bool SolidsEditor::insert_on_edge() {
    return insert(&TMOD3D::insert_point_on_side);
}

bool SolidsEditor::insert(bool (TMOD3D::*operation)()) {
    if (!selected_.pick) {
        return false;
    }
    bring_up_to_date();
    const TMOD3D before(model());
    if (!(model().*operation)()) {
        return false;
    }
    undo_->keep_insertion(selected_, before, model());
    orientation_->forget();
    selected_ = {};
    gather_vertex(model().edit_state[edit_picked_vertex], 0);
    return true;
}

int SolidsEditor::undo_count() const {
    return undo_->undo_count();
}

int SolidsEditor::redo_count() const {
    return undo_->redo_count();
}

bool SolidsEditor::undo() {
    return undo_->undo_count() > 0 && go(&Undo::undo);
}

bool SolidsEditor::redo() {
    return undo_->redo_count() > 0 && go(&Undo::redo);
}

template <class Way>
bool SolidsEditor::go(Way way) {
    end_replacing();
    const int faces = solids_.face_count();
    const Undo::Side side = ((*undo_).*way)(solids_, {selected_, is_current_});
    if (solids_.face_count() != faces) { // an insertion
        orientation_->forget();
    }
    selected_ = side.selected;
    is_current_ = side.is_current;
    return true;
}

std::size_t SolidsEditor::undo_bytes() const {
    return undo_->bytes();
}

void SolidsEditor::drop_oldest_undo() {
    undo_->drop_oldest();
}

void SolidsEditor::bring_up_to_date() {
    end_replacing();
    if (!is_current_) {
        orientation_->renew(model());
        model().rotate_model();
        is_current_ = true;
    }
}

namespace {

// Vertices may be shared with other bodies, whose faces and edges then move too.
void add_faces_and_edges_at_vertices(TMOD3D& model) {
    std::vector<bool> has_face(static_cast<std::size_t>(model.polys.GetSize()), false);
    std::vector<bool> has_edge(static_cast<std::size_t>(model.lines.GetSize()), false);
    const auto add = [](const CArray<int>& more, std::vector<bool>& has, CArray<int>& list) {
        for (const int i : more) {
            if (!has[i]) {
                has[i] = true;
                list.Add(i);
            }
        }
    };
    for (const int f : model.relat_list_1) {
        has_face[f] = true;
    }
    for (const int e : model.relat_list_3) {
        has_edge[e] = true;
    }
    for (const int v : model.relat_list_2) {
        add(model.verts[v].faces, has_face, model.relat_list_1);
        add(model.verts[v].lines, has_edge, model.relat_list_3);
    }
}

std::optional<Verdict> coordinate_out_of_range(const TMOD3D& model) {
    constexpr double largest = std::numeric_limits<float>::max();
    for (const int v : model.relat_list_2) {
        for (const double coordinate : model.verts[v].model_xyz) {
            if (!(std::abs(coordinate) <= largest)) {
                Verdict verdict{Verdict::Kind::out_of_range};
                verdict.vertex = v;
                verdict.coordinate = coordinate;
                return verdict;
            }
        }
    }
    return {};
}

Verdict verdict_on(const TMOD3D& model, const Collision& collision) {
    const LINE3D& edge = model.lines[collision.edge];
    const POLY3D& face = model.polys[collision.face];
    Verdict verdict{Verdict::Kind::edge_meets_face,
                    collision.edge,
                    {edge.start_vert, edge.end_vert},
                    collision.face};
    verdict.body = face.bodies.IsEmpty() ? -1 : face.bodies[0];
    if (!(edge.length > 0)) {
        verdict.kind = Verdict::Kind::edge_without_length;
    } else if (!std::isfinite(face.plane[3])) {
        verdict.kind = Verdict::Kind::face_without_area;
    }
    return verdict;
}

} // namespace
} // namespace korvel::kit
