#include "kit/solids/solids.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>

#include "kit/base/error.h"
#include "kit/files/body_names.h"
#include "kit/files/file_kind.h"
#include "kit/solids/exact.h"
#include "kit/solids/file_precision.h"
#include "kit/solids/inside.h"
#include "kit/solids/join.h"
#include "kit/solids/placed_model.h"

namespace korvel::kit {
namespace {

void check_indices(const TMOD3D& model);
void need_body(const Solids& solids, int body);
void store_colour(BODY3D& body);
Solids make_starter(const Point3& centre, const Point3& size, bool is_cuboid, int rounds,
                    const Context& context);

} // namespace

Solids::Solids(std::unique_ptr<TMOD3D> model) : model_(std::move(model)) {
    check_indices(*model_);
}

Solids::Solids(const TMOD3D& model) : Solids(std::make_unique<TMOD3D>(model)) {}

Solids::Solids(const Solids& other) {
    const auto turn = other.hold();
    model_ = other.model_;
    placement_ = other.placement_;
    names_ = other.names_;
}

Solids& Solids::operator=(const Solids& other) {
    if (this != &other) {
        Solids copy(other);
        *this = std::move(copy);
    }
    return *this;
}

Solids Solids::read(const std::filesystem::path& file, const Context& context) {
    return read(TextFile(file), context);
}

Solids Solids::read(const TextFile& file, const Context& context) {
    context.report("reading the model", 0, 1);
    const CheckPointScope calls = context.follow_calls();
    Solids solids;
    const auto note = read_expecting({FileKind::model}, file, [&] {
        auto change = read_placed_model(file, *solids.model_, solids.placement_);
        solids.names_ = read_body_names(file, solids.size());
        return change;
    });
    if (note) {
        context.warn(*note);
    }
    context.report("reading the model", 1, 1);
    return solids;
}

void Solids::write(const std::filesystem::path& file) const {
    write_completely(*this, file);
}

void Solids::write(OutputFile& out) const {
    if (face_count() == 0 || empty()) {
        throw input_error("a model without faces is no model, and no file can contain it");
    }
    write_placed_model(*model_, placement_, out.stream(), names_);
}

std::array<int, 2> Solids::edge(int index) const {
    const LINE3D& edge = model_->lines[index];
    return {edge.start_vert, edge.end_vert};
}

std::optional<int> Solids::body_at(const Point3& point) const {
    const int body = kit::body_at(*model_, point);
    return body < 0 ? std::nullopt : std::optional(body);
}

std::vector<Surface> Solids::surfaces() const {
    return kit::surfaces(*model_);
}

std::optional<Pick> Solids::pick(double u, double v) const {
    const auto turn = hold();
    return kit::pick(*model_, u, v);
}

Point3 Solids::to_view(const Point3& point) const {
    TMOD3D& model = operand(*model_);
    Point3 at = point;
    Point3 seen = {};
    rotate_point(model.rot_matrix, at.data(), seen.data());
    for (std::size_t k = 0; k < 3; ++k) {
        seen[k] -= model.view_center[k];
    }
    return seen;
}

Point3 Solids::from_view(const Point3& point) const {
    TMOD3D& model = operand(*model_);
    Point3 seen = point;
    for (std::size_t k = 0; k < 3; ++k) {
        seen[k] += model.view_center[k];
    }
    Point3 at = {};
    rotate_point(model.ant_matrix, seen.data(), at.data());
    return at;
}

double Solids::volume() const {
    double volume = 0;
    for (const Body body : *this) {
        volume += body.volume();
    }
    return volume;
}

Box Solids::bounds() const {
    if (vertex_count() == 0) {
        return {};
    }
    return {to_point(model_->cuboid_min), to_point(model_->cuboid_max)};
}

std::pair<double, double> Solids::distances_from(const Plane& plane) const {
    return kit::distances_from(plane, *model_);
}

double Solids::change_by_file() const {
    double largest = 0;
    for (const VERT3D& vertex : model_->verts) {
        const Point3 point = to_point(vertex.model_xyz);
        const Point3 read = as_in_file(point, placement_.grid);
        for (std::size_t k = 0; k < point.size(); ++k) {
            largest = std::max(largest, std::abs(read[k] - point[k]));
        }
    }
    return largest;
}

Section Solids::cut(const Plane& plane) const {
    const double length = plane.normal_length();
    if (!(length > 1e-100 && length < 1e100) || !std::isfinite(plane.d)) {
        throw input_error("the plane has no finite normal");
    }
    const auto turn = hold();
    Section section = cut_model(operand(*model_), plane);
    section.placement_ = placement_;
    return section;
}

void Solids::add(const Solids& other, const Context& context) {
    if (!context.can_end_calls() && &other != this) {
        append(other, context);
        return;
    }
    Solids whole(*this);
    {
        const CheckPointScope calls = context.follow_calls();
        context.report("merging", 0, 1);
        whole.append(other, context);
        context.report("merging", 1, 1);
    }
    *this = std::move(whole);
}

void Solids::append(const Solids& other, const Context& context) {
    placement_ =
        common_placement({{placement_, bounds()}, {other.placement_, other.bounds()}}, context);
    names_.resize(static_cast<std::size_t>(size()));
    names_.insert(names_.end(), other.names_.begin(), other.names_.end());
    const auto turn = other.hold();
    model_->add_model(operand(*other.model_));
}

// From the highest number, which leaves the lower ones as they are. Each `deletet` derives the
// whole model anew, so only the last body goes that way; what stays is the same, but for the corner
// at which the list of a face starts.
void Solids::remove(std::span<const int> bodies) {
    for (const int body : bodies) {
        need_body(*this, body);
    }
    std::set<int, std::greater<>> numbers(bodies.begin(), bodies.end());
    if (numbers.empty()) {
        return;
    }
    names_.resize(static_cast<std::size_t>(size()));
    for (const int body : numbers) {
        names_.erase(names_.begin() + body);
    }
    const int last = *numbers.rbegin();
    numbers.erase(last);
    for (const int body : numbers) {
        model_->bodies.RemoveAt(body);
    }
    model_->deletet(last);
}

void Solids::clean() {
    model_->clear_no_use_ele();
}

void Solids::set_name(int body, std::string_view name) {
    need_body(*this, body);
    if (names_.size() <= static_cast<std::size_t>(body)) {
        names_.resize(static_cast<std::size_t>(body) + 1);
    }
    names_[static_cast<std::size_t>(body)] = name;
}

void Solids::set_colour(int body, const BodyColour& colour) {
    need_body(*this, body);
    BODY3D& record = model_->bodies[body];
    record.hue = colour.hue;
    record.saturation = colour.saturation;
    record.lightness = colour.lightness;
    record.alpha = colour.alpha;
    store_colour(record);
}

void Solids::set_view(const ViewAngles& angles) {
    model_->vis_angle_1 = angles.turn;
    model_->vis_angle_2 = angles.tilt;
    model_->change_vis_parm();
}

void Solids::derive() {
    model_->comput_mode_aux_parm();
    model_->model_wrap_cuboid();
    model_->change_vis_parm();
    model_->found_top_rel();
    for (int body = 0; body < size(); ++body) {
        model_->get_body_span(body);
    }
}

Solids make_cuboid(const Point3& centre, const Point3& edges, int rounds, const Context& context) {
    return make_starter(centre, edges, true, rounds, context);
}

Solids make_ball(const Point3& centre, double radius, int rounds, const Context& context) {
    return make_starter(centre, {radius, radius, radius}, false, rounds, context);
}

// Added one by one to an empty model they come out the same, but each time everything is derived.
Solids merge(std::vector<Solids> parts, const Context& context) {
    const auto count = static_cast<int>(parts.size());
    TMOD3D joined;
    std::vector<std::string> names;
    std::vector<PlacedBox> placements;
    for (int i = 0; i < count; ++i) {
        context.report("merging", i, count + 1);
        Solids& part = parts[static_cast<std::size_t>(i)];
        for (const Body body : part) {
            names.push_back(body.name());
        }
        placements.push_back({part.placement(), part.bounds()});
        append_bodies(part.model(), joined);
    }
    context.report("merging", count, count + 1);
    Solids whole;
    whole.set_placement(common_placement(placements, context));
    if (!joined.bodies.IsEmpty()) {
        const CheckPointScope calls = context.follow_calls();
        whole.model().add_model(joined);
    }
    for (int body = 0; body < whole.size(); ++body) {
        whole.set_name(body, names[static_cast<std::size_t>(body)]);
    }
    context.report("merging", count + 1, count + 1);
    return whole;
}

namespace {

void check_indices(const TMOD3D& model) {
    const auto need = [](const CArray<int>& indices, int size, const char* what) {
        for (const int index : indices) {
            if (index < 0 || index >= size) {
                throw input_error("a " + std::string(what) + " has the number " +
                                      std::to_string(index) + ", there are " + std::to_string(size),
                                  {.value = std::to_string(index)});
            }
        }
    };
    for (const POLY3D& face : model.polys) {
        need(face.verts, model.verts.GetSize(), "vertex of a face");
        need(face.bodies, model.bodies.GetSize(), "body at a face");
    }
    for (const BODY3D& body : model.bodies) {
        need(body.polys, model.polys.GetSize(), "face of a body");
        need(body.verts, model.verts.GetSize(), "vertex of a body");
        need(body.lines, model.lines.GetSize(), "edge of a body");
    }
    for (const LINE3D& edge : model.lines) {
        for (const int end : {edge.start_vert, edge.end_vert}) {
            if (end < 0 || end >= model.verts.GetSize()) {
                throw input_error("an edge ends at vertex " + std::to_string(end) + ", there are " +
                                      std::to_string(model.verts.GetSize()),
                                  {.value = std::to_string(end)});
            }
        }
    }
}

void need_body(const Solids& solids, int body) {
    if (body < 0 || body >= solids.size()) {
        throw input_error("there is no body " + std::to_string(body) + " among " +
                              std::to_string(solids.size()),
                          {.value = std::to_string(body)});
    }
}

// A model file has no colours, but three parameters of each body that nothing computes with.
void store_colour(BODY3D& body) {
    body.param_1 = body.hue;
    body.param_2 = body.saturation;
    body.param_3 = body.lightness;
}

Solids make_starter(const Point3& centre, const Point3& size, bool is_cuboid, int rounds,
                    const Context& context) {
    constexpr int most_rounds = 10;
    const bool is_sound = std::all_of(size.begin(), size.end(), [](double length) {
        return length > 0 && std::isfinite(length);
    });
    if (!is_sound || rounds < 0 || rounds > most_rounds) {
        throw input_error(is_sound ? "the number of rounds is not from 0 to 10"
                                   : "a body needs lengths above 0");
    }
    Point3 at = centre;
    Point3 lengths = size;
    const CheckPointScope calls = context.follow_calls();
    Solids solids;
    solids.model().inti_mode(at.data(), lengths.data(), is_cuboid ? 1 : 0, rounds);
    store_colour(solids.model().bodies[0]);
    return solids;
}

} // namespace
} // namespace korvel::kit
