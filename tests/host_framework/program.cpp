// From curves to a section, with every bit of every result as a text: to be compared between
// programs whose frameworks differ.

#include <cstdio>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "korvel/module/korvel.h"
#include "tests/host_framework/drawing.h"
#include "tests/support/model_state.h"
#include "tests/support/streams.h"

using korvel::test::Drawing;
using korvel::test::EveryBit;

namespace {

void run_regions(const char* map);
void run_small_region();
void run_raised_model(PLYDT& regions);
void run_starter_models();
void run_damaged_files();
int count_notices();

} // namespace

int main(int, char** arguments) {
    try {
        run_regions(arguments[1]);
        run_small_region();
        run_starter_models();
        run_damaged_files();
        std::printf("%d notices\n", count_notices());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}

namespace {

#if defined(KORVEL_USE_HOST_FRAMEWORK)
int count_notices() {
    return stand_in::notices();
}
#else
int notices = 0;
const korvel::message_box_handler former =
    korvel::set_message_box_handler([](const char*, unsigned) {
        ++notices;
        return IDOK;
    });
int count_notices() {
    return notices;
}
#endif

template <class Value>
void print(const Value& value) {
    if constexpr (std::is_arithmetic_v<Value>) {
        std::printf(" %a", static_cast<double>(value));
    } else if constexpr (requires { value.GetSize(); }) {
        std::printf("\n%d:", korvel::size_of(value));
        for (const auto& element : value) {
            print(element);
        }
    } else if constexpr (std::is_array_v<Value>) {
        for (const auto& element : value) {
            print(element);
        }
    } else {
        std::apply([&](auto... members) { (print(value.*members.second), ...); },
                   members_of(EveryBit(), &value));
    }
}

template <class Value>
void print(const char* title, const Value& value) {
    std::printf("\n== %s", title);
    print(value);
}

void print_text(const char* title, const std::string& text) {
    std::printf("\n== %s\n%s", title, text.c_str());
}

void read_curves(const char* map, CArray<tagPOINT>& points, CArray<int>& counts) {
    std::ifstream in(map);
    int curves = 0;
    in >> curves;
    for (int curve = 0; curve < curves; ++curve) {
        int count = 0;
        in >> count;
        counts.Add(count);
        for (int k = 0; k < count; ++k) {
            tagPOINT point{};
            in >> point.x >> point.y;
            points.Add({point.x / 100, point.y / 100});
        }
    }
    if (!in || points.IsEmpty()) {
        throw std::runtime_error(std::string("cannot read ") + map);
    }
}

void print_set(const char* title, const PLYDT& set) {
    std::printf("\n== %s", title);
    for (const auto& ring : set.ring_list) {
        print(ring.pts);
        print(ring.sides);
    }
    for (const auto& region : set.region_list) {
        print(region.rings);
    }
    for (const auto& side : set.side_list) {
        std::printf("\n%d %d", side.p0, side.p1);
    }
    for (const auto& t : set.trg_list) {
        std::printf("\n%d %d %d %a", t.va, t.vb, t.vc, t.radius);
    }
}

/// The functions with `draw` in their name draw; the others compute.
void run_regions(const char* map) {
    CArray<tagPOINT> points;
    CArray<int> counts;
    read_curves(map, points, counts);
    CREGION network;
    network.SetTolerance(2);
    network.SetPtsInfo(points, counts);
    print("cleaned counts", counts);

    CCPloy2DRg set;
    network.GetAllRegion(set);
    set.creat_top_rel();
    const std::string file = korvel::test::written([&](FILE* stream) { set.writepolyrg(stream); });
    print_text("polygon regions", file);
    CCPloy2DRg read;
    read.readpolyrg(korvel::test::stream_of(file).get());
    const CCPloy2DRg copy(read);
    std::printf("\n%d regions", korvel::size_of(copy.region_list));
    print_text("drawn set", Drawing().of([&](CDC* dc) {
        read.Draw_Regon(10, 20, 0, 0, 2, 3, 2, dc);
        read.Draw_Poly_Line(10, 20, 0, 0, 2, 3, 2, dc);
    }));

    network.SetSelectRegion({0, 0});
    for (int i = 0; i < 20 * 20; ++i) {
        network.AddSelectRegion({i % 20 * 50, i / 20 * 50});
    }
    print_text("drawn network", Drawing().of([&](CDC* dc) { network.Draw_Regon(dc); }));
    PLYDT selected;
    network.GetSelectRegion(selected);
    PLYDT::set_trace_files(false);
    selected.region_tranglate();
    print_set("selected", selected);
    print_text("drawn triangles", Drawing().of([&](CDC* dc) { selected.Draw_Trgls(dc); }));
    run_raised_model(selected);

    CREGION seeded(points, counts, {0, 0}, 1);
    CArray<int> holes;
    std::printf("\n%d in the seed's ring", seeded.GetRegion(points, counts, holes));
}

void run_raised_model(PLYDT& regions) {
    regions.CoordinatesTrans(1, 0, 0, 0, 0, 1, 1, -10, 20);
    TMOD3D model;
    model.create3dmode(regions);
    print("raised", model);
    TMOD2D section;
    model.get_x_section(500.5, section);
    print("section", section);
    print_text("section file",
               korvel::test::written([&](FILE* stream) { section.writedate(stream); }));
    print_text("drawn section", Drawing().of([&](CDC* dc) {
        section.draw_filled_model(0, 2, 10, 100, 0, 0, 1, 1, 1, dc);
    }));
    const TMOD2D copied(section);
    print("copied section", copied);
}

TMOD3D model_of(const std::string& text) {
    TMOD3D model;
    model.read_mode(korvel::test::stream_of(text).get());
    return model;
}

/// A square with a hole, by the exhaustive form of the triangulation.
void run_small_region() {
    CArray<tagPOINT> points;
    CArray<int> counts;
    for (const int half : {50, 11}) {
        for (const tagPOINT side : {tagPOINT{-1, -1}, tagPOINT{1, -1}, tagPOINT{1, 1},
                                    tagPOINT{-1, 1}, tagPOINT{-1, -1}}) {
            points.Add({side.x * half, side.y * half + side.x});
        }
        counts.Add(5);
    }
    CREGION network;
    network.SetPtsInfo(points, counts);
    PLYDT set;
    network.GetAllRegion(set);
    PLYDT::set_trace_files(true);
    set.region_tranglate();
    print_set("exhaustive", set);
}

void run_starter_models() {
    double centre[] = {0, 0, 0};
    double size[] = {2, 2, 2};
    TMOD3D ball;
    ball.inti_mode(centre, size, 0, 2);
    TMOD3D model;
    model.inti_mode(centre, size, 1, 1);
    model.add_model(ball);
    double click[] = {0.25, 0.125, 0};
    std::printf("\n%d", model.get_point_xyz(click));
    std::printf(" %d", model.insert_point_on_poly() ? 1 : 0);
    double other_click[] = {0.5, -0.25, 0};
    std::printf(" %d", model.get_point_xyz(other_click));
    std::printf(" %d", model.insert_point_on_side() ? 1 : 0);
    model.edit_state[0] = 2;
    model.set_rel_triangle_vert();
    model.mut_weight();
    model.back_rel_vert();
    double to[] = {0, 0, 0.5};
    double from[] = {0, 0, 0};
    model.change_mut_points(6, to, from);
    model.rel_aux_parm();
    std::printf(" %d", model.legal_body_rel_side() ? 1 : 0);
    print("edited", model);
    const std::string file = korvel::test::file_of(model);
    TMOD3D read = model_of(file);
    read.vis_angle_1 = 30;
    read.change_vis_parm();
    read.set_body_as_relat(1);
    print("read", read);
    read.deletet(0);
    read.set_all_body_as_relat();
    print("without a body", read);
    TMOD3D copy(read);
    copy = model;
    print("copy", copy);
}

/// Counts below zero and beyond what there is, and indices of nothing.
void run_damaged_files() {
    for (const char* text :
         {"", "-5", "3 0 0 0 1 0 0 0 1 0 -2", "3 0 0 0 1 0 0 0 1 0 1 0 1 2 -7",
          "3 0 0 0 1 0 0 0 1 0 1 0 1 2 1 -4 0 0 0 0", "3 0 0 0 1 0 0 0 1 0 1 0 1 9 1 1 0 0 0 0",
          "3 0 0 0 1 0 0 0 1 0 1 0 1 2 9 1 0 0 0 0"}) {
        print("model", model_of(text));
        TMOD2D section;
        section.readdate(korvel::test::stream_of(text).get());
        print("section", section);
        CCPloy2DRg set;
        set.readpolyrg(korvel::test::stream_of(text).get());
        std::printf("\n%d", korvel::size_of(set.pt_list));
    }
}

} // namespace
