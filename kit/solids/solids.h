#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kit/base/context.h"
#include "kit/base/indexed_range.h"
#include "kit/base/owned.h"
#include "kit/base/placement.h"
#include "kit/base/points.h"
#include "kit/files/output_file.h"
#include "kit/files/text_file.h"
#include "kit/solids/body.h"
#include "kit/solids/box.h"
#include "kit/solids/pick.h"
#include "kit/solids/section.h"
#include "kit/solids/surface.h"
#include "kit/solids/view_angles.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Bodies bounded by triangles, over shared vertices, edges and faces, and a view of them. Bodies,
/// faces, edges and vertices are numbered from 0. Relations, equations, volumes and the view are
/// always current.
///
/// Coordinates are the user's. Their placement is what files store them by: `read` and `write`
/// convert between the steps of its grid and these coordinates, everything else keeps it.
///
/// A value: a copy copies the whole model, a move a pointer; what was moved from can only be
/// assigned to or destroyed. Several threads may call `const` members of one object at once:
/// `cut`, `pick`, colours and copies take turns, because the exact class keeps its marks in the
/// model; all others run side by side. What a host reads through `model()` is not protected; see
/// `hold`.
class Solids {
    struct At {
        const Solids* solids = nullptr;
        Body operator()(int index) const { return {*solids, index}; }
    };
    struct FaceAt {
        const TMOD3D* model = nullptr;
        Face operator()(int index) const { return {*model, index}; }
    };

public:
    // Make; see also `make_cuboid`, `make_ball`, `merge` and `raise`.

    /// No bodies.
    Solids() = default;
    Solids(const Solids& other);
    Solids& operator=(const Solids& other);
    Solids(Solids&&) noexcept = default;
    Solids& operator=(Solids&&) noexcept = default;
    ~Solids() = default;

    /// Takes over a model, or copies it, with everything derived. Throws an `Error` when an index
    /// is outside its list. Linear.
    explicit Solids(std::unique_ptr<TMOD3D> model);
    explicit Solids(const TMOD3D& model);

    // Read and write.

    /// Reads a body model file and derives everything, in the user's coordinates if the file stores
    /// a placement. Steps, or coordinates without one, pass through single precision: a warning
    /// names the first whole number that this changes. Bodies take the colours and the names that
    /// the file contains. Throws an `Error` that names the line of the first thing that does not
    /// fit, or the kind of a file that is something else. Takes over a second from about a million
    /// faces on.
    static Solids read(const std::filesystem::path& file, const Context& context = {});
    static Solids read(const TextFile& file, const Context& context = {});

    /// Writes a body model file, completely or not at all, in steps of the placement's grid, with
    /// the placement unless it is plain. Coordinates get six decimals, colours are stored in the
    /// parameters of the bodies, names in lines behind them. Throws an `Error` for solids without
    /// faces, which no file can contain.
    void write(const std::filesystem::path& file) const;
    void write(OutputFile& out) const;

    // Ask.

    int size() const { return model_->bodies.GetSize(); }
    bool empty() const { return size() == 0; }
    Body operator[](int index) const { return {*this, index}; }
    auto begin() const { return IndexedRange<At>::iterator({this}, 0); }
    auto end() const { return IndexedRange<At>::iterator({this}, size()); }

    int vertex_count() const { return model_->verts.GetSize(); }
    int edge_count() const { return model_->lines.GetSize(); }
    int face_count() const { return model_->polys.GetSize(); }

    /// The position of a vertex.
    Point3 vertex(int index) const { return to_point(model_->verts[index].model_xyz); }

    /// The two vertices of an edge.
    std::array<int, 2> edge(int index) const;

    /// The grid and the reference system by which files store the model.
    const Placement& placement() const { return placement_; }

    /// All faces as a range of `Face`.
    IndexedRange<FaceAt> faces() const { return {face_count(), FaceAt{&*model_}}; }

    /// The first body that contains a point, by a vote of rays in directions along which no usual
    /// model has anything. A point on a surface belongs to either side; near an open body the
    /// answer is uncertain. Takes three rays against every face, as a rule; for many points see
    /// `BodyLocator`.
    std::optional<int> body_at(const Point3& point) const;

    /// How the faces of each body are connected: closed or open, how many pieces. Near-linear.
    std::vector<Surface> surfaces() const;

    /// What is seen at u, v in the view, nearest to the viewer; nothing where no face is, and for a
    /// flat model seen face-on. Linear in the faces.
    std::optional<Pick> pick(double u, double v) const;

    ViewAngles view() const { return {model_->vis_angle_1, model_->vis_angle_2}; }

    /// A point of the model in the view, and back.
    Point3 to_view(const Point3& point) const;
    Point3 from_view(const Point3& point) const;

    // Measure.

    /// The sum of the bodies' volumes, in cubic units of the model. Near-linear.
    double volume() const;

    /// Around all vertices, empty for none.
    Box bounds() const;

    /// The least and the greatest distance of the vertices from a plane. Linear.
    std::pair<double, double> distances_from(const Plane& plane) const;

    /// How far the six decimals and the single precision of a model file, in steps of the grid,
    /// move a coordinate at most. Linear; about as slow as writing the file.
    double change_by_file() const;

    // Cut.

    /// Cuts all bodies by a plane. Where vertices are on the plane, the cut is made beside it, by a
    /// distance just above what rounding may hide. Throws an `Error` when the plane has no finite
    /// normal. Linear in the model and, for each body, quadratic in its polygons.
    Section cut(const Plane& plane) const;

    // Change.

    /// Appends the bodies of other solids; vertices and faces are numbered on. Nothing is joined:
    /// bodies that touch keep their own vertices. Coordinates stay as they are; of different
    /// placements the grid with the finest step remains, its origin moved where files need it, and
    /// the first known reference system, with a warning if another differs. Derives everything
    /// anew; `merge` does so once for many parts. With a context that can end it, works on a copy
    /// until all is done.
    void add(const Solids& other, const Context& context = {});

    /// Removes bodies, each once, and the faces and vertices that no other body uses; the others
    /// keep their order. Throws an `Error` for a number that is no body. Derives everything anew
    /// unless there is nothing to remove.
    void remove(std::span<const int> bodies);

    /// Removes the faces that no body and the vertices that no face uses; the others keep their
    /// order. Derives everything anew.
    void clean();

    /// Sets how files store the model; coordinates stay as they are.
    void set_placement(const Placement& placement) { placement_ = placement; }

    void set_name(int body, std::string_view name);

    /// Files store hue, saturation and lightness.
    void set_colour(int body, const BodyColour& colour);

    /// Turns the view. Linear.
    void set_view(const ViewAngles& angles);

    // The exact class.

    const TMOD3D& model() const { return *model_; }

    /// For calls of the exact class that change the model. A host that changes vertices, faces or
    /// bodies itself calls `derive` afterwards.
    TMOD3D& model() { return *model_; }

    /// Derives edge directions, the orientation of faces, equations, volumes, bounds, view and
    /// relations from vertices, edges, faces and bodies.
    void derive();

    /// Hands the model over; these solids are then as if they had been moved from.
    std::unique_ptr<TMOD3D> take_model() { return model_.release(); }

    /// Keeps other threads' `cut`, `pick`, colours and copies waiting while the result exists, for
    /// a host that reads colours or marks through `model()`, or draws it.
    std::unique_lock<std::mutex> hold() const { return std::unique_lock(turns_.mutex); }

private:
    friend class Body;
    friend class Undo;

    // Each object has its own mutex; nothing of it is copied or moved.
    struct Turns {
        Turns() = default;
        Turns(const Turns& /*other*/) noexcept {}
        Turns& operator=(const Turns& /*other*/) noexcept { return *this; }
        ~Turns() = default;
        mutable std::mutex mutex;
    };

    void append(const Solids& other, const Context& context);

    Owned<TMOD3D> model_;
    Placement placement_;
    std::vector<std::string> names_; // of the first bodies; those behind have none
    Turns turns_;
};

/// A cuboid of 24 faces, each divided into four `rounds` times, along the axes. Throws an `Error`
/// unless the edge lengths are above 0 and `rounds` is from 0 to 10. Four times as much work with
/// each round; seven rounds take about a second.
Solids make_cuboid(const Point3& centre, const Point3& edges, int rounds = 0,
                   const Context& context = {});

/// A ball of 20 faces, each divided into four `rounds` times, with all vertices at `radius`.
Solids make_ball(const Point3& centre, double radius, int rounds = 0, const Context& context = {});

/// All bodies of several solids, as if added one after another, with everything derived once. A
/// part that is moved in is consumed, also when the call is cancelled.
Solids merge(std::vector<Solids> parts, const Context& context = {});

} // namespace korvel::kit
