#pragma once

#include <cstdio>

#include "korvel/body/body3d.h"
#include "korvel/body/edit/edit_state.h"
#include "korvel/geometry/line3d.h"
#include "korvel/geometry/poly3d.h"
#include "korvel/geometry/vert3d.h"
#include "korvel/section/tmod2d.h"

class PLYDT;

/// A body model: bodies that share one list of vertices, one of edges and one of faces, and a view.
///
/// Records refer to one another by 0-based index into `verts`, `lines`, `polys` and `bodies`.
/// Derived members are current only after the operation that derives them: relations after
/// `found_top_rel`, equations and volumes after `comput_mode_aux_parm`, everything of the view
/// after `rotate_model`. Operations that read, start, raise or merge models derive everything. The
/// cost of an operation is close to linear in the model. Indices that name no record are ignored.
class KORVEL_API TMOD3D {
public:
    CArray<VERT3D, VERT3D&> verts;
    CArray<LINE3D, LINE3D&> lines;
    CArray<POLY3D, POLY3D&> polys;
    CArray<BODY3D, BODY3D&> bodies;
    double orig_shift[3] = {};  ///< the point last given to `trans_model_orig`
    double view_center[3] = {}; ///< centre of the extents in the view; `view_xyz` is relative to it
    double wrap_cuboid[6] = {}; ///< bounds: x min, x max, y min, y max, z min, z max
    double wrap_radius = 1000.0;      ///< half the diagonal of the bounds
    double cuboid_corners[8][3] = {}; ///< corner 4·ix + 2·iy + iz, 0 the minimum and 1 the maximum
    double rotated_corners[8][3] = {}; ///< the corners in the view, relative to `view_center`
    double cuboid_min[3] = {};
    double cuboid_max[3] = {};
    double model_frame[6] = {}; ///< copied with the model, otherwise unused
    double view_bounds[6] = {}; ///< u min, u max, v min, v max, w min, w max, relative as above
    double vis_angle_1 = 5.0;   ///< view angles in degrees: turn about z …
    double vis_angle_2 = 5.0;   ///< … and tilt about x
    double view_dir[3] = {};
    double view_scale = 1.0;     ///< copied with the model, otherwise unused
    double ant_matrix[16] = {};  ///< view coordinates into model coordinates
    double rot_matrix[16] = {};  ///< model coordinates into view coordinates
    double pick_data[9] = {};    ///< written by picking, see `korvel::PickSlot`
    int edit_state[11] = {0, 3}; ///< what is picked and gathered, see `korvel::EditSlot`
    CArray<int> relat_list_1;    ///< gathered faces: of a neighbourhood, a body or the model
    CArray<int> relat_list_2;    ///< gathered vertices
    CArray<int> relat_list_3;    ///< gathered edges
    CArray<int> relat_list_4;    ///< level of each entry of `relat_list_2`
    CArray<double> mut_weights;  ///< weight of each entry of `relat_list_2`, see `mut_weight`
    TMOD2D sect_model_1;         ///< with sect_model_2: copied with the model, otherwise unused
    TMOD2D sect_model_2;
    int mode_ok = 0;       ///< 1 once a complete model has been read or built
    double orig[3] = {};   ///< model coordinates plus this are file coordinates
    int tail_data[8] = {}; ///< copied with the model, otherwise unused

    /// An empty model with the matrices of the default view angles.
    TMOD3D();
    TMOD3D(const TMOD3D& src);
    ~TMOD3D();

    /// Copies every member. Self-assignment keeps the object.
    TMOD3D& operator=(const TMOD3D& src);
    void Copy(const TMOD3D& src);

    /// Empties all arrays and lists and sets `mode_ok` to 0; view, bounds and origin stay.
    void RemoveAll();

    // The model file.

    /// Writes the model to an open text stream: vertices with `orig` added, faces, bodies. Reals
    /// have six decimals. Writing ends after a count of 0.
    void write_mode(FILE* stream);

    /// Reads a model of triangles from an open text stream into this empty model and derives
    /// everything. Reals are rounded to single precision, and `orig` is neither read nor
    /// subtracted. Records that are there already keep their lists, which are appended to. A vertex
    /// count below 1 leaves the model as it is, a face count below 1 empties `verts`, a body count
    /// below 1 empties `verts` and `polys`; all three leave `mode_ok` 0. A stream that ends early,
    /// or an index outside its array, leaves what was read, `mode_ok` 0 and nothing derived.
    void read_mode(FILE* stream);

    // Relations and equations.

    /// Derives the lists by which records refer to one another: `faces`, `lines`, `neighbours` and
    /// `bodies` of vertices, `faces` and `bodies` of edges, `neighbour_faces` and `bodies` of
    /// faces, `verts`, `lines` and `neighbour_bodies` of bodies.
    void found_top_rel();

    /// Computes edge directions, turns the faces of each body so that neighbours agree and the
    /// volume is positive, and computes face planes and volumes. A face that two bodies share is
    /// turned for the later one, which may leave the volume of the earlier one negative.
    void comput_mode_aux_parm();

    /// Gathers the neighbourhood of the picked vertex into the relation lists, level by level up to
    /// the depth in `edit_state`. Without a picked vertex the lists become empty.
    void set_rel_triangle_vert();

    /// Computes the equations of the gathered edges and faces.
    void rel_aux_parm();

    /// False when a gathered edge passes through a face that has neither of its ends as a vertex.
    /// Triangles far from all of these edges cost one comparison, for many edges the others are in
    /// a tree of boxes; each other face, and each triangle without a proper plane, is tested
    /// against every edge.
    bool legal_body_rel_side();

    // Starter models.

    /// Starts this empty model with a cuboid (kind ≠ 0; `size` contains its three edge lengths) or
    /// a ball made of triangles (kind 0; `size[0]` is its radius) around `center`. Each of `rounds`
    /// refinements divides every triangle into four; a model too large for that stays as it is.
    void inti_mode(double* center, double* size, int kind, int rounds);
    void
    inti_cube(); ///< makes the cube of edge length 2 without what is derived: 14 vertices, 24 faces
    void inti_p20(); ///< makes the regular icosahedron in the unit sphere in the same way

    // The view.

    void inti_vis_plan();    ///< computes the matrices from the view angles
    void change_vis_parm();  ///< `inti_vis_plan`, then `rotate_model`
    void rotate_model();     ///< computes everything of the view from model coordinates
    void ant_rotate_model(); ///< computes model coordinates and equations from view coordinates
    void get_vis_poly(); ///< computes the faces' planes in the view and which faces face the viewer
    /// Moves the model so that the model point p becomes its origin. The bodies' extents in the
    /// view are computed before the view is.
    void trans_model_orig(double* p);
    void model_wrap_cuboid();  ///< bounds, their radius and corners
    void roate_wrap_cuboid();  ///< turns the corners into the view
    void get_body_span(int i); ///< extents of body i
    void back_all_vert();      ///< saves the model coordinates of every vertex
    void back_rel_vert();      ///< the same for the gathered vertices

    // Sections. The relations must be current.

    /// Cuts along x, by the plane y = v.
    void get_x_section(double v, TMOD2D& out);
    /// Cuts along y, by the plane x = v.
    void get_y_section(double v, TMOD2D& out);
    /// Cuts by the plane a·x + b·y + c·z + d = 0, given as (a, b, c, d). The section has one vertex
    /// for each edge that the plane meets, ends included, and one face and one group in the body's
    /// colour for each closed loop of at least three edges around a body. A plane that misses the
    /// model gives an empty section.
    void get_section(double* plane, TMOD2D& out);
    /// Traces one loop of cut edges around a body, from `face` across `edge`, by the marks that
    /// `get_section` sets, and appends the edges to `loop`, `edge` last. False when the loop does
    /// not close; the edges up to there have been appended.
    bool trace_section_poly(int body, int face, int edge, CArray<int>& loop);

    // Raising solids.

    /// Appends one body: the triangles of `d` at both levels of its `prism_pts` as end caps, and
    /// walls on its rings. Shows the numbers of triangles and points in a message box. Fewer than
    /// three lifted points leave the model as it is, and show nothing.
    void create3dmode(PLYDT& d);

    // Picking and point location.

    /// Picks what lies under the click p = (u, v), in view coordinates: of the faces that face the
    /// viewer the one nearest to the viewer. Returns 0 and writes the depth of the hit into p[2],
    /// the hit in model coordinates into `pick_data[0 … 2]`, the point on the nearest edge into
    /// `pick_data[6 … 8]`, and face, nearest vertex, nearest edge and body into `edit_state[3 …
    /// 6]`; `edit_state[2]` becomes 1. Returns 1, with nothing written, where nothing is hit. A
    /// flat model seen face-on cannot be picked.
    int get_point_xyz(double* p);

    /// The first body that holds the model point p, by counting the faces that the ray from p along
    /// `dir` meets; −1 outside the wrap cuboid and where no body holds it. A ray through an edge or
    /// a vertex, or along a face, may count wrongly.
    int detect_a_point_in_body(double* p, double* dir);

    /// The volume of body i, computed afresh and not stored; 0 for a body that does not exist.
    double get_pt_bady_v(int i);

    /// Puts a new vertex at the picked point. The picked face becomes one triangle for each of its
    /// sides, in every body that lists it; the first takes its number, the others are appended.
    /// `insert_point_on_side` puts it on the picked face's nearest edge instead, where each face on
    /// that edge is cut from the new vertex. Other vertices and faces keep their numbers,
    /// everything derived is built again, and the new vertex is the picked one. False, with the
    /// model as it was, when nothing is picked or a triangle would be degenerate.
    bool insert_point_on_poly();
    bool insert_point_on_side();

    // Moves of many vertices. The relation lists say what moves.

    void set_body_as_relat(int i); ///< takes the faces, vertices and edges of body i
    void set_all_body_as_relat();  ///< takes those of the whole model
    /// Sets body i's `change_dirt` from the quadrant of its view box in which p lies.
    void get_body_change_dirt(int i, double* p);
    /// Fall-off weights of the gathered vertices: 1 at the first, less with level and distance.
    void mut_weight();
    /// Moves the gathered vertices in the view, to or by p and q, and refreshes what depends on
    /// them: 1 onto p, 2 shifted so that the picked vertex lands on p, 3 a body's box scaled from q
    /// to p, 4 shifted from q to p by weight, 5 and 6 shifted by p[2] in depth. Other modes move
    /// nothing.
    void change_mut_points(int mode, double* p, double* q);

    // Drawing in immediate mode into the current OpenGL context, whose projection, model-view
    // transform, depth test and blending are the caller's. The view must be current, and for the
    // first two the relations. Larger w is nearer to the viewer. Nothing in the model changes.

    /// Fills the faces of each body in view coordinates, in the body's hue, saturation and alpha; a
    /// face is the lighter the more it faces the viewer.
    void gl_draw_mbody();
    /// The same in model coordinates, opaque and with normals, which are those of the view.
    void gl_draw_orig_mbody();
    /// Issues the model coordinates of all faces' vertices and nothing else.
    void gl_draw_all_poly();
    void gl_draw_cuboid_line(); ///< the turned wrap cuboid in black lines
    void gl_draw_cuboid_plan(); ///< draws nothing
    void gl_draw_sel_vert();    ///< the gathered vertices as yellow points
    /// All edges in white, lifted towards the viewer by a two-hundredth of the model's depth.
    void gl_draw_body_outlook();

    // Merging and cleaning. Everything derived is built again.

    /// Appends copies of m's vertices, faces and bodies.
    void add_model(TMOD3D& m);
    /// Removes body i and what only it used.
    void deletet(int i);
    /// Removes the faces that no body and the vertices that no face uses; the others keep their
    /// order.
    void clear_no_use_ele();
};
