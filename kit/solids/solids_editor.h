#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <vector>

#include "kit/base/context.h"
#include "kit/base/points.h"
#include "kit/solids/pick.h"
#include "kit/solids/solids.h"
#include "kit/solids/verdict.h"

namespace korvel::kit {

class SettledOrientation;
class Undo;

/// Changes solids step by step: pick, gather what is to move, move it in the view, judge the
/// result, undo and redo. Positions and distances are in view coordinates u, v, w
/// (`Solids::to_view`).
///
/// The editor has the solids while it exists and returns them by `take`. It is moved, not copied,
/// and used by one thread at a time.
class SolidsEditor {
public:
    explicit SolidsEditor(Solids solids);
    ~SolidsEditor();
    SolidsEditor(SolidsEditor&&) noexcept;
    SolidsEditor& operator=(SolidsEditor&&) noexcept;

    // Ask.

    /// The solids as they are now. After moves it first brings orientation, volumes and view up to
    /// date, which is linear in the model; the reference is valid while the editor exists.
    const Solids& solids();

    /// Looks at the faces ahead of the first move, which would do so otherwise: for a host that has
    /// time before somebody waits. Linear.
    void prepare();

    /// Hands the solids over; this editor can then only be assigned to or destroyed.
    Solids take();

    /// Turns the view. Undo does not turn it back.
    void set_view(const ViewAngles& angles);

    // Pick and gather.

    /// What is seen at u, v, as `Solids::pick`; insertions go there. Bodies that are hidden are
    /// looked through.
    std::optional<Pick> pick(double u, double v, const std::set<int>& hidden = {});

    /// Gathers a body, to move it as it is, and the faces and edges of other bodies at its
    /// vertices. Throws an `Error` for a number that is no body, and for a body without faces.
    void gather_body(int body);

    /// Gathers a vertex and those that are at most `depth` edges away, with all faces and edges at
    /// them. Throws an `Error` for a number that is no vertex and a negative depth.
    void gather_vertex(int vertex, int depth);

    /// Gathers everything.
    void gather_all();

    /// What is gathered; of a vertex with its surroundings, it comes first.
    std::span<const int> vertices() const;
    std::span<const int> edges() const;
    std::span<const int> faces() const;

    /// Whether a move fades out from a gathered vertex: other vertices are gathered with it.
    bool is_faded() const;

    /// False when a move would have to fade out over no distance: all gathered vertices have the
    /// same position.
    bool can_fade() const;

    /// For each gathered vertex its share in a move that fades out: 1 at the first, less with the
    /// number of edges and the root of the distance.
    std::span<const double> weigh();

    // Move what is gathered. Each throws an `Error` when nothing is gathered, can be undone, and
    // refreshes the equations of what is gathered and the bounds.

    /// By u, v and w. A body keeps its shape. Around a vertex u and v fade out (`weigh`); w does
    /// not, and moves all alike.
    void move(const Point3& by);

    /// All vertices to one place in the view; their depths stay.
    void move_onto(const Point2& place);

    /// All alike, such that the vertex that was picked or gathered first comes to a place in the
    /// view.
    void move_picked_onto(const Point2& place);

    /// Scales the gathered body in the view: the two sides of its box next to `from` go along to
    /// `to`, the opposite ones stay. Throws an `Error` unless a body is gathered. A body without
    /// extent in u or v gets coordinates that are not finite, which `judge` reports.
    void scale(const Point2& from, const Point2& to);

    /// By u and v, fading out.
    void move_by_weight(const Point2& by);

    /// By w, all alike; the first of the two also computes the weights.
    void move_in_depth_with_weights(double by);
    void move_in_depth(double by);

    /// Makes a move of the same vertices in the place of the last move, as if that had not been
    /// made: what follows a mouse. Faster than `undo` and the move where nothing has asked for
    /// `solids()` since the last move; then it takes time for what is gathered, and for bounds.
    /// When `move` throws, the last move is undone.
    void move_instead(const std::function<void(SolidsEditor&)>& move);

    // Judge.

    /// Whether the last move leaves coordinates that a file can contain, and no gathered edge that
    /// passes through a face, touches one other than those at its ends, or has no length. Other
    /// edges are not tested, nor is the path of the move. Linear in the model, near-linear where
    /// many edges are gathered. Cancelling it changes nothing.
    Verdict judge(const Context& context = {});

    // Insert a vertex.

    /// At the picked point of the picked face, which becomes one triangle for each of its sides; or
    /// on the edge of that face nearest to the click, where each face at the edge is divided. Other
    /// vertices and faces keep their numbers, edges are numbered anew. The new vertex is gathered.
    /// False, with nothing changed, when nothing is picked, the face has moved away from the
    /// picked point, or a triangle would be degenerate. Linear.
    bool insert_on_face();
    bool insert_on_edge();

    // Name and colour, as in `Solids`. Undo does not change them back.

    void set_name(int body, std::string_view name) { solids_.set_name(body, name); }
    void set_colour(int body, const BodyColour& colour) { solids_.set_colour(body, colour); }

    // Undo and redo.

    /// The number of moves and insertions that can be undone, and of those that can be done again.
    int undo_count() const;
    int redo_count() const;

    /// Undoes the last move or insertion: the model is as it was before, to the last bit, with what
    /// was picked and gathered then. False when there is nothing to undo. Linear.
    bool undo();

    /// Does again what was undone last: the model is as it was when that was undone, to the last
    /// bit, with what was picked and gathered then. A new move or insertion drops what could be
    /// done again. False when there is nothing. Linear.
    bool redo();

    /// The bytes that all of this takes, about: for a move some hundred for each vertex that moves,
    /// for an insertion some thousand. The first insertion into a model that was raised or started
    /// takes some hundred for each face: all edges get other numbers, and many another direction.
    std::size_t undo_bytes() const;

    /// Drops the record of the oldest move or insertion that can be undone. Where there is none, of
    /// the one that would be done again last. Then `undo_count()` or `redo_count()` is less by one.
    void drop_oldest_undo();

private:
    friend class Undo;

    struct Selection {
        std::optional<Pick> pick;
        std::optional<int> body; // that is gathered
    };

    TMOD3D& model() { return solids_.model(); }
    const TMOD3D& model() const { return solids_.model(); }
    void bring_up_to_date();
    void begin_move();
    void end_replacing();
    void change(int mode, Point3 p, Point3 q = {});
    bool insert(bool (TMOD3D::*operation)());
    template <class Way>
    bool go(Way way);

    Solids solids_;
    std::unique_ptr<Undo> undo_;
    std::unique_ptr<SettledOrientation> orientation_;
    Selection selected_;
    bool is_current_ = true;    // orientation, volumes and view are up to date
    bool is_replacing_ = false; // the state before the move is on record
};

} // namespace korvel::kit
