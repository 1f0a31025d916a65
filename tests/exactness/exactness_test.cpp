// Results of the exact classes, every bit of them, against digests that are the same with every
// compiler and on every system. The digests are in digests.txt beside this file.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "korvel/base/text_reader.h"
#include "korvel/body/edit/edit_state.h"
#include "tests/exactness/digest.h"
#include "tests/support/dice.h"
#include "tests/support/models.h"
#include "tests/support/sample_curves.h"

using namespace korvel::test;

namespace {

struct Record {
    std::string digest;
    std::string with_mingw; // where the C library of mingw-w64 gives other digits
};

std::map<std::string, Record> records() {
    std::map<std::string, Record> all;
    std::ifstream file(KORVEL_DIGESTS);
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line.substr(0, line.find('#')));
        std::string name;
        Record record;
        if (words >> name >> record.digest) {
            words >> record.with_mingw;
            all[name] = record;
        }
    }
    return all;
}

/// Crossing and touching curves, the same each time.
CurveArrays random_curves(unsigned seed) {
    Dice dice(seed);
    CurveArrays curves;
    for (int curve = 0; curve < 60; ++curve) {
        const int count = dice(2, 6);
        curves.counts.Add(count);
        for (int k = 0; k < count; ++k) {
            curves.pts.Add({dice(0, 400), dice(0, 400)});
        }
    }
    return curves;
}

/// A region keeps pointers to the network.
struct Analysed {
    explicit Analysed(CurveArrays of) : curves(std::move(of)) {
        region.SetPtsInfo(curves.pts, curves.counts);
    }
    CurveArrays curves;
    CREGION region;
};

CurveArrays sample(const std::string& name) {
    return name == "random" ? random_curves(5) : sample_curves(name);
}

Digest regions(const std::string& name) {
    Analysed network(sample(name));
    const CREGION& found = network.region;
    return Digest()
        .add(found.curve_pts)
        .add(found.curve_counts)
        .add(found.node_pts)
        .add(found.curve_to_node)
        .add(found.rings)
        .add(found.unique_pts)
        .add(found.ring_pts)
        .add(found.regions);
}

PLYDT triangulated(const std::string& name) {
    Analysed network(sample(name));
    PLYDT set;
    network.region.GetAllRegion(set);
    set.region_tranglate();
    return set;
}

Digest triangles(const std::string& name) {
    const PLYDT set = triangulated(name);
    return Digest().add(set.pt_list).add(set.side_list).add(set.trg_list);
}

Digest polygon_file(const std::string& name) {
    Analysed network(sample(name));
    CCPloy2DRg set;
    network.region.GetAllRegion(set);
    return Digest().add(written([&](FILE* stream) { set.writepolyrg(stream); }));
}

/// What does not depend on the view.
Digest solid_of(const TMOD3D& model) {
    Digest digest;
    for (const VERT3D& vertex : model.verts) {
        digest.add(vertex.model_xyz).add(vertex.faces).add(vertex.bodies);
    }
    for (const LINE3D& line : model.lines) {
        digest.add(line.start_vert).add(line.end_vert).add(line.length).add(line.direction);
    }
    for (const POLY3D& face : model.polys) {
        digest.add(face.verts).add(face.lines).add(face.plane).add(face.bodies);
    }
    for (const BODY3D& body : model.bodies) {
        digest.add(body.polys).add(body.verts).add(body.volume).add(body.model_min);
    }
    return digest.add(model.wrap_cuboid).add(model.wrap_radius);
}

TMOD3D raised() {
    PLYDT set = triangulated("random");
    set.CoordinatesTrans(1, 0, 0, 0.1, 0.2, 0.3, 0.7, -1.1, 2.3);
    TMOD3D model;
    model.create3dmode(set);
    model.comput_mode_aux_parm();
    model.model_wrap_cuboid();
    model.found_top_rel();
    return model;
}

TMOD3D merged() {
    TMOD3D model = starter(0, 2, {3, 4, 5}, {0.1, 0.2, 0.3});
    TMOD3D cuboid = starter(1, 1, {2.1, 3.3, 0.7});
    TMOD3D prism = model_of(raised_l);
    model.add_model(cuboid);
    model.add_model(prism);
    model.deletet(1);
    model.clear_no_use_ele();
    return model;
}

Digest sections() {
    TMOD3D model = merged();
    Digest digest;
    TMOD2D cut;
    model.get_x_section(0.37, cut);
    digest.add(cut);
    model.get_y_section(-0.21, cut);
    digest.add(cut);
    double plane[] = {0.3, -0.5, 0.7, -0.11};
    model.get_section(plane, cut);
    return digest.add(cut).add(written([&](FILE* stream) { cut.writedate(stream); }));
}

TMOD3D turned(TMOD3D model, double turn, double tilt) {
    model.vis_angle_1 = turn;
    model.vis_angle_2 = tilt;
    model.change_vis_parm();
    return model;
}

Digest views() {
    Digest digest;
    for (int angle = -360; angle <= 360; angle += 15) {
        const TMOD3D model = turned(starter(0, 1), angle, angle / 2.0 + 7);
        digest.add(model.rot_matrix).add(model.verts).add(model.rotated_corners);
    }
    return digest;
}

/// Picks, inserts and moves at many angles. Moves go through the view, so that the digits of its
/// matrices become those of the model.
Digest edited() {
    Dice dice(7);
    TMOD3D model = starter(0, 1);
    for (int done = 0; done < 40;) {
        const double tilt = dice.between(-180, 180); // in this order with every compiler
        const double turn = dice.between(-180, 180);
        model = turned(model, turn, tilt);
        double p[3] = {dice.between(model.view_bounds[0], model.view_bounds[1]),
                       dice.between(model.view_bounds[2], model.view_bounds[3]), 0};
        if (model.get_point_xyz(p) == 0) {
            if (++done % 4 == 0) {
                model.insert_point_on_poly();
            }
            model.edit_state[korvel::edit_neighbourhood_depth] = 2;
            model.set_rel_triangle_vert();
            double to[3] = {p[0] + 0.01, p[1] - 0.02, p[2]};
            model.change_mut_points(korvel::move_by_weight, to, p);
        }
    }
    return solid_of(model);
}

Digest numbers_as_text() {
    Dice dice(9);
    Digest digest;
    char text[400];
    for (int round = 0; round < 20000; ++round) {
        std::uint64_t bits = 0;
        for (int part = 0; part < 4; ++part) {
            bits = bits << 16U | static_cast<unsigned>(dice(0, 0xffff));
        }
        const auto number = std::bit_cast<double>(bits);
        if (std::isfinite(number)) {
            for (const char* const format : {"%f", "%g", "%.17g"}) {
                digest.add(std::string_view(text, static_cast<std::size_t>(std::snprintf(
                                                      text, sizeof text, format, number))));
            }
        }
    }
    return digest;
}

/// Well formed and malformed numbers, one text after another in one stream.
template <class Number>
Digest numbers_from_text() {
    const char* const pieces[] = {
        "0",         "1",        "7",          "42",       "00",         "123456",
        ".",         ".",        "+",          "-",        "e",          "E",
        "e+",        "e-",       "x",          "0x",       "0X",         "p",
        "P-",        "f",        "a",          " ",        "\n",         "\t\v\f\r ",
        ",",         "99999999", "2147483647", "16777217", "4294967296", "9223372036854775808",
        "3.4028236", "1e39",     "1e-46",      "\xa0"};
    Dice dice(1);
    std::string text;
    std::vector<int> starts;
    for (int round = 0; round < 4000; ++round) {
        starts.push_back(static_cast<int>(text.size()));
        for (int k = dice(1, 7); k > 0; --k) {
            text += dice.pick(pieces);
        }
        text += '\1';
    }
    const Stream stream = stream_of(text);
    Digest digest;
    for (const int start : starts) {
        std::fseek(stream.get(), start, SEEK_SET);
        Number number = 77;
        for (bool found = true; found;) {
            found = korvel::TextReader(stream.get()).read(number);
            digest.add(found).add(number).add(std::ftell(stream.get()));
        }
    }
    return digest;
}

const std::map<std::string, std::function<Digest()>> cases = {
    {"regions-random", [] { return regions("random"); }},
    {"regions-us-states", [] { return regions("us-states"); }},
    {"regions-world-110m", [] { return regions("world-110m"); }},
    {"triangles-random", [] { return triangles("random"); }},
    {"triangles-us-states", [] { return triangles("us-states"); }},
    {"triangles-world-110m", [] { return triangles("world-110m"); }},
    {"polygon-file-us-states", [] { return polygon_file("us-states"); }},
    {"solids-raised", [] { return solid_of(raised()); }},
    {"solids-merged", [] { return solid_of(merged()); }},
    {"solids-ball", [] { return solid_of(starter(0, 3)); }},
    {"sections", sections},
    {"model-file",
     [] {
         TMOD3D model = merged();
         return Digest().add(file_of(model));
     }},
    {"views", views},
    {"edited", edited},
    {"numbers-as-text", numbers_as_text},
    {"integers-from-text", numbers_from_text<int>},
    {"reals-from-text", numbers_from_text<float>},
};

TEST(Exactness, DigitsAreTheSameOnEverySystem) {
    PLYDT::set_trace_files(false);
    const auto expected = records();
    EXPECT_EQ(expected.size(), cases.size());
    for (const auto& [name, result] : cases) {
        const auto record = expected.find(name);
        const std::string digest = result().text();
        if (record == expected.end()) {
            ADD_FAILURE() << "no record: " << name << ' ' << digest;
            continue;
        }
#if defined(__MINGW32__)
        const bool is_other = !record->second.with_mingw.empty();
#else
        const bool is_other = false;
#endif
        EXPECT_EQ(digest, is_other ? record->second.with_mingw : record->second.digest) << name;
    }
    PLYDT::set_trace_files(true);
}

} // namespace
