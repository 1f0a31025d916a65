// What a host can use of the exported classes without calling an operation: the types, the names
// and the order of their members, the values in new objects, and independent copies.

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>
#include <utility>

#include "korvel/module/korvel.h"

namespace {

using IntArray = CArray<int>;
using Verts = CArray<VERT3D, VERT3D&>;
using Lines = CArray<LINE3D, LINE3D&>;
using Polys = CArray<POLY3D, POLY3D&>;

/// Notes the members of a record one after another, and fails when one has another type or precedes
/// one that was noted earlier.
template <class Record>
class MembersOf {
public:
    template <class Type, class... Members>
    MembersOf& of_type(Members... members) {
        static_assert((std::is_same_v<Members, Type Record::*> && ...));
        (note(reinterpret_cast<std::uintptr_t>(&(record_.*members))), ...);
        return *this;
    }

private:
    void note(std::uintptr_t address) {
        ++members_;
        EXPECT_LT(last_, address) << "member " << members_;
        last_ = address;
    }

    Record record_;
    std::uintptr_t last_ = 0;
    int members_ = 0;
};

TEST(Layout, GeometryRecordsHaveTheirMembersInOrder) {
    MembersOf<VERT3D>()
        .of_type<double[3]>(&VERT3D::model_xyz, &VERT3D::backup_xyz, &VERT3D::temp_view_xyz,
                            &VERT3D::view_xyz)
        .of_type<int>(&VERT3D::spare_int_1, &VERT3D::spare_int_2, &VERT3D::state_flags,
                      &VERT3D::spare_int_3)
        .of_type<IntArray>(&VERT3D::faces, &VERT3D::lines, &VERT3D::neighbours, &VERT3D::bodies);
    MembersOf<LINE3D>()
        .of_type<int>(&LINE3D::start_vert, &LINE3D::end_vert, &LINE3D::state_flags)
        .of_type<double[3]>(&LINE3D::direction)
        .of_type<double>(&LINE3D::length)
        .of_type<double[3]>(&LINE3D::line_2d_eqt)
        .of_type<int>(&LINE3D::main_axis)
        .of_type<IntArray>(&LINE3D::faces, &LINE3D::bodies);
    MembersOf<POLY3D>()
        .of_type<IntArray>(&POLY3D::verts, &POLY3D::lines, &POLY3D::neighbour_faces,
                           &POLY3D::bodies)
        .of_type<double>(&POLY3D::area)
        .of_type<double[4]>(&POLY3D::plane)
        .of_type<int>(&POLY3D::main_axis)
        .of_type<double[4]>(&POLY3D::rotated_plane)
        .of_type<int>(&POLY3D::state_flags);
    MembersOf<CMYColor>()
        .of_type<float>(&CMYColor::hue, &CMYColor::saturation, &CMYColor::lightness, &CMYColor::red,
                        &CMYColor::green, &CMYColor::blue)
        .of_type<float[6]>(&CMYColor::spare_values);
    MembersOf<POLY3D_CPLX>()
        .of_type<IntArray>(&POLY3D_CPLX::polys, &POLY3D_CPLX::list_2, &POLY3D_CPLX::list_3,
                           &POLY3D_CPLX::list_4)
        .of_type<double>(&POLY3D_CPLX::area)
        .of_type<int>(&POLY3D_CPLX::rgb)
        .of_type<double>(&POLY3D_CPLX::aux_value)
        .of_type<int>(&POLY3D_CPLX::aux_int)
        .of_type<double>(&POLY3D_CPLX::hue, &POLY3D_CPLX::saturation, &POLY3D_CPLX::lightness)
        .of_type<double[3]>(&POLY3D_CPLX::aux_xyz_1, &POLY3D_CPLX::aux_xyz_2);
    MembersOf<TriUtvalinst>().of_type<CArray<TriUtvalinst::Triple>>(&TriUtvalinst::triples_1,
                                                                    &TriUtvalinst::triples_2);
    MembersOf<TriUtvalinst::Triple>().of_type<int[3]>(&TriUtvalinst::Triple::v);
}

TEST(Layout, ModelsHaveTheirMembersInOrder) {
    MembersOf<BODY3D>()
        .of_type<IntArray>(&BODY3D::polys, &BODY3D::lines, &BODY3D::verts,
                           &BODY3D::neighbour_bodies)
        .of_type<double>(&BODY3D::volume, &BODY3D::param_1)
        .of_type<int>(&BODY3D::body_flags)
        .of_type<double>(&BODY3D::hue, &BODY3D::saturation, &BODY3D::lightness, &BODY3D::alpha,
                         &BODY3D::param_2, &BODY3D::param_3)
        .of_type<double[3]>(&BODY3D::model_min, &BODY3D::model_max, &BODY3D::view_mid,
                            &BODY3D::view_span, &BODY3D::view_min, &BODY3D::view_max)
        .of_type<int>(&BODY3D::change_dirt);
    MembersOf<TMOD2D>()
        .of_type<Verts>(&TMOD2D::verts)
        .of_type<Lines>(&TMOD2D::lines)
        .of_type<Polys>(&TMOD2D::polys)
        .of_type<CArray<POLY3D_CPLX, POLY3D_CPLX&>>(&TMOD2D::groups);
    MembersOf<TMOD3D>()
        .of_type<Verts>(&TMOD3D::verts)
        .of_type<Lines>(&TMOD3D::lines)
        .of_type<Polys>(&TMOD3D::polys)
        .of_type<CArray<BODY3D, BODY3D&>>(&TMOD3D::bodies)
        .of_type<double[3]>(&TMOD3D::orig_shift, &TMOD3D::view_center)
        .of_type<double[6]>(&TMOD3D::wrap_cuboid)
        .of_type<double>(&TMOD3D::wrap_radius)
        .of_type<double[8][3]>(&TMOD3D::cuboid_corners, &TMOD3D::rotated_corners)
        .of_type<double[3]>(&TMOD3D::cuboid_min, &TMOD3D::cuboid_max)
        .of_type<double[6]>(&TMOD3D::model_frame, &TMOD3D::view_bounds)
        .of_type<double>(&TMOD3D::vis_angle_1, &TMOD3D::vis_angle_2)
        .of_type<double[3]>(&TMOD3D::view_dir)
        .of_type<double>(&TMOD3D::view_scale)
        .of_type<double[16]>(&TMOD3D::ant_matrix, &TMOD3D::rot_matrix)
        .of_type<double[9]>(&TMOD3D::pick_data)
        .of_type<int[11]>(&TMOD3D::edit_state)
        .of_type<IntArray>(&TMOD3D::relat_list_1, &TMOD3D::relat_list_2, &TMOD3D::relat_list_3,
                           &TMOD3D::relat_list_4)
        .of_type<CArray<double>>(&TMOD3D::mut_weights)
        .of_type<TMOD2D>(&TMOD3D::sect_model_1, &TMOD3D::sect_model_2)
        .of_type<int>(&TMOD3D::mode_ok)
        .of_type<double[3]>(&TMOD3D::orig)
        .of_type<int[8]>(&TMOD3D::tail_data);
}

TEST(Layout, RegionBuilderHasItsMembersInOrder) {
    MembersOf<CREGION>()
        .of_type<CArray<tagPOINT>*>(&CREGION::input_pts)
        .of_type<IntArray*>(&CREGION::input_counts)
        .of_type<tagPOINT>(&CREGION::seed_pt)
        .of_type<double>(&CREGION::tolerance)
        .of_type<int>(&CREGION::is_calculated)
        .of_type<CArray<tagPOINT>>(&CREGION::curve_pts)
        .of_type<IntArray>(&CREGION::curve_counts)
        .of_type<CArray<tagPOINT>>(&CREGION::node_pts)
        .of_type<CArray<CREGION::CURVE_NODE>>(&CREGION::curve_to_node)
        .of_type<CArray<CREGION::NODE_CURVE>>(&CREGION::node_to_curve)
        .of_type<CArray<CREGION::tagRToC>>(&CREGION::rings, &CREGION::ex_rings, &CREGION::in_rings)
        .of_type<CArray<tagPOINT>>(&CREGION::unique_pts)
        .of_type<IntArray>(&CREGION::pt_index)
        .of_type<CArray<CREGION::RToPt>>(&CREGION::ring_pts)
        .of_type<CArray<CREGION::RING_SIDE>>(&CREGION::sides)
        .of_type<CArray<CREGION::PT_LINK>>(&CREGION::pt_links)
        .of_type<CArray<CREGION::PyToRg>>(&CREGION::regions);
    MembersOf<CREGION::CURVE_NODE>().of_type<int>(
        &CREGION::CURVE_NODE::start_node, &CREGION::CURVE_NODE::end_node,
        &CREGION::CURVE_NODE::oc_flag, &CREGION::CURVE_NODE::ring_dir,
        &CREGION::CURVE_NODE::ring_turn);
    MembersOf<CREGION::NODE_CURVE>()
        .of_type<int>(&CREGION::NODE_CURVE::curve_num)
        .of_type<IntArray>(&CREGION::NODE_CURVE::curve_ids);
    MembersOf<CREGION::tagRToC>()
        .of_type<double>(&CREGION::tagRToC::ring_area)
        .of_type<IntArray>(&CREGION::tagRToC::curve_ids);
    MembersOf<CREGION::RToPt>()
        .of_type<double>(&CREGION::RToPt::ring_area)
        .of_type<int>(&CREGION::RToPt::is_hole, &CREGION::RToPt::is_removed)
        .of_type<IntArray>(&CREGION::RToPt::pts);
    MembersOf<CREGION::RING_SIDE>().of_type<int>(&CREGION::RING_SIDE::p0, &CREGION::RING_SIDE::p1);
    MembersOf<CREGION::PT_LINK>().of_type<IntArray>(&CREGION::PT_LINK::rings,
                                                    &CREGION::PT_LINK::sides);
    MembersOf<CREGION::PyToRg>()
        .of_type<int>(&CREGION::PyToRg::tag0, &CREGION::PyToRg::tag1, &CREGION::PyToRg::is_select)
        .of_type<IntArray>(&CREGION::PyToRg::rings);
}

TEST(Layout, PolygonRegionsHaveTheirMembersInOrder) {
    static_assert(std::is_same_v<CCPloy2DRg::RING, PLYDT::RING>);
    using Ring = CCPloy2DRg::RING;
    MembersOf<Ring>()
        .of_type<int>(&Ring::tag0, &Ring::tag1)
        .of_type<IntArray>(&Ring::pts, &Ring::sides);
    MembersOf<VERT2D>()
        .of_type<double>(&VERT2D::x, &VERT2D::y)
        .of_type<IntArray>(&VERT2D::ring_refs, &VERT2D::side_refs)
        .of_type<int>(&VERT2D::mark);
    MembersOf<LINE2D>()
        .of_type<int>(&LINE2D::p0, &LINE2D::p1)
        .of_type<IntArray>(&LINE2D::list_a, &LINE2D::list_b)
        .of_type<int>(&LINE2D::flags)
        .of_type<double>(&LINE2D::a, &LINE2D::b, &LINE2D::c);
    MembersOf<CCPloy2DRg>()
        .of_type<CArray<VERT2D>>(&CCPloy2DRg::pt_list)
        .of_type<CArray<LINE2D>>(&CCPloy2DRg::side_list)
        .of_type<CArray<Ring>>(&CCPloy2DRg::ring_list)
        .of_type<CArray<CCPloy2DRg::PyToRg>>(&CCPloy2DRg::region_list);
    using Region = CCPloy2DRg::PyToRg;
    MembersOf<Region>()
        .of_type<int>(&Region::tag0, &Region::tag1)
        .of_type<int[6]>(&Region::attr)
        .of_type<unsigned char>(&Region::red, &Region::green, &Region::blue)
        .of_type<IntArray>(&Region::rings);

    MembersOf<PLYDT>()
        .of_type<CArray<VERT2D>>(&PLYDT::pt_list)
        .of_type<CArray<PLYDT::SIDE>>(&PLYDT::side_list)
        .of_type<CArray<PLYDT::RING>>(&PLYDT::ring_list)
        .of_type<CArray<PLYDT::PyToRg>>(&PLYDT::region_list)
        .of_type<CArray<PLYDT::TRG>>(&PLYDT::trg_list)
        .of_type<CArray<PLYDT::PRISM_PT>>(&PLYDT::prism_pts);
    using Side = PLYDT::SIDE;
    MembersOf<Side>()
        .of_type<int>(&Side::p0, &Side::p1)
        .of_type<IntArray>(&Side::list_a, &Side::list_b)
        .of_type<int>(&Side::flags)
        .of_type<double>(&Side::ux, &Side::uy, &Side::len);
    MembersOf<PLYDT::PyToRg>()
        .of_type<int>(&PLYDT::PyToRg::tag0, &PLYDT::PyToRg::tag1)
        .of_type<double>(&PLYDT::PyToRg::spare)
        .of_type<IntArray>(&PLYDT::PyToRg::rings);
    using Triangle = PLYDT::TRG;
    MembersOf<Triangle>()
        .of_type<double>(&Triangle::res0, &Triangle::res1, &Triangle::radius)
        .of_type<int>(&Triangle::va, &Triangle::vb, &Triangle::vc);
    using Lifted = PLYDT::PRISM_PT;
    MembersOf<Lifted>()
        .of_type<double>(&Lifted::x, &Lifted::y, &Lifted::z)
        .of_type<int>(&Lifted::word);
}

TEST(Layout, NewObjectsHaveTheirDefaults) {
    const POLY3D_CPLX group;
    EXPECT_EQ(group.hue, 80);
    EXPECT_EQ(group.saturation, 0.5);
    EXPECT_EQ(group.lightness, 0.6);
    EXPECT_EQ(group.rgb, 0);

    const BODY3D body;
    EXPECT_EQ(body.hue, 80);
    EXPECT_EQ(body.saturation, 0.5);
    EXPECT_EQ(body.lightness, 0.5);
    EXPECT_EQ(body.alpha, 1);
    for (const double zero : {body.param_1, body.param_2, body.param_3}) {
        EXPECT_EQ(zero, 0);
    }
    EXPECT_EQ(body.body_flags, 0);
    EXPECT_EQ(body.change_dirt, 0);

    const TMOD3D model;
    EXPECT_EQ(model.wrap_radius, 1000);
    EXPECT_EQ(model.view_scale, 1);
    EXPECT_EQ(model.vis_angle_1, 5);
    EXPECT_EQ(model.vis_angle_2, 5);
    EXPECT_EQ(model.edit_state[1], 3);
    EXPECT_EQ(model.edit_state[7] + model.edit_state[8] + model.mode_ok, 0);
    EXPECT_EQ(model.orig[0], 0);
    EXPECT_NE(model.rot_matrix[0], 0) << "the matrices are made from the start";

    const CREGION builder;
    EXPECT_EQ(builder.tolerance, 1);
    EXPECT_EQ(builder.is_calculated, 0);
    EXPECT_EQ(builder.input_pts, nullptr);
    EXPECT_EQ(builder.input_counts, nullptr);

    const CMYColor colour;
    EXPECT_EQ(colour.hue + colour.saturation + colour.lightness + colour.red + colour.green +
                  colour.blue + colour.spare_values[5],
              0);
}

// Every array of a class. What `PLYDT` lifts is no part of its value.

template <class Visit>
void each_array(VERT3D& v, Visit visit) {
    (visit(v.faces), visit(v.lines), visit(v.neighbours), visit(v.bodies));
}
template <class Visit>
void each_array(LINE3D& e, Visit visit) {
    (visit(e.faces), visit(e.bodies));
}
template <class Visit>
void each_array(POLY3D& f, Visit visit) {
    (visit(f.verts), visit(f.lines), visit(f.neighbour_faces), visit(f.bodies));
}
template <class Visit>
void each_array(BODY3D& b, Visit visit) {
    (visit(b.polys), visit(b.lines), visit(b.verts), visit(b.neighbour_bodies));
}
template <class Visit>
void each_array(CMYColor&, Visit) {}
template <class Visit>
void each_array(POLY3D_CPLX& g, Visit visit) {
    (visit(g.polys), visit(g.list_2), visit(g.list_3), visit(g.list_4));
}
template <class Visit>
void each_array(TriUtvalinst& t, Visit visit) {
    (visit(t.triples_1), visit(t.triples_2));
}
template <class Visit>
void each_array(TMOD2D& s, Visit visit) {
    (visit(s.verts), visit(s.lines), visit(s.polys), visit(s.groups));
}
template <class Visit>
void each_array(TMOD3D& m, Visit visit) {
    (visit(m.verts), visit(m.lines), visit(m.polys), visit(m.bodies));
    (visit(m.relat_list_1), visit(m.relat_list_2), visit(m.relat_list_3), visit(m.relat_list_4));
    visit(m.mut_weights);
    each_array(m.sect_model_1, visit);
    each_array(m.sect_model_2, visit);
}
template <class Visit>
void each_array(CREGION& r, Visit visit) {
    (visit(r.curve_pts), visit(r.curve_counts), visit(r.node_pts), visit(r.curve_to_node));
    (visit(r.node_to_curve), visit(r.rings), visit(r.ex_rings), visit(r.in_rings));
    (visit(r.unique_pts), visit(r.pt_index), visit(r.ring_pts), visit(r.sides));
    (visit(r.pt_links), visit(r.regions));
}
template <class Visit>
void each_array(CCPloy2DRg& s, Visit visit) {
    (visit(s.pt_list), visit(s.side_list), visit(s.ring_list), visit(s.region_list));
}
template <class Visit>
void each_array(PLYDT& s, Visit visit) {
    (visit(s.pt_list), visit(s.side_list), visit(s.ring_list), visit(s.region_list));
    visit(s.trg_list);
}

template <class Class>
class Value : public testing::Test {};

using Classes = testing::Types<VERT3D, LINE3D, POLY3D, CMYColor, POLY3D_CPLX, TriUtvalinst, BODY3D,
                               TMOD2D, TMOD3D, CREGION, CCPloy2DRg, PLYDT>;
TYPED_TEST_SUITE(Value, Classes);

TYPED_TEST(Value, CopiesShareNothingAndEmptyingFreesTheStorage) {
    using Class = TypeParam;
    static_assert(std::has_virtual_destructor_v<Class> == !std::is_same_v<Class, TMOD3D>);
    static_assert(std::is_polymorphic_v<Class> == !std::is_same_v<Class, TMOD3D>);
    static_assert(std::is_constructible_v<Class, Class&>);
    static_assert(
        std::is_same_v<decltype(std::declval<Class&>() = std::declval<Class&>()), Class&>);

    Class source;
    each_array(source, [](auto& array) { array.SetSize(3); });
    const auto expect_sizes = [](Class& object, int size) {
        each_array(object, [size](const auto& array) {
            EXPECT_EQ(array.GetSize(), size);
            EXPECT_EQ(array.GetData() == nullptr, size == 0);
        });
    };

    Class constructed(source);
    Class assigned;
    Class copied;
    each_array(assigned, [](auto& array) { array.SetSize(5); });
    assigned = source;
    copied.Copy(source);
    source.RemoveAll();
    expect_sizes(source, 0);
    for (Class* const copy : {&constructed, &assigned, &copied}) {
        expect_sizes(*copy, 3);
    }
}

} // namespace
