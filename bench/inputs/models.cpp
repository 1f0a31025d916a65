#include "bench/inputs/models.h"

#include <unistd.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <stdexcept>
#include <string>

namespace korvel::bench {
namespace {

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

struct Direction {
    double x;
    double y;
    double z;
};

File open_file(const std::filesystem::path& path, const char* mode);
void write_off(FILE* file, const TMOD3D& model);
void add_bumpy_point(TMOD3D& model, Direction d);
void add_body(TMOD3D& model);
void add_triangle(TMOD3D& model, int a, int b, int c);
tagPOINT cell_origin(int cell);
void add_moved(TMOD3D& model, TMOD3D& one, double dx, double dy);

} // namespace

ModelFile::ModelFile(TMOD3D& model, Form form) {
    static int files = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("korvel-bench-" + std::to_string(getpid()) + "-" + std::to_string(files++));
    const auto file = open_file(path_, "w");
    if (form == Form::own) {
        model.write_mode(file.get());
    } else {
        write_off(file.get(), model);
    }
}

ModelFile::~ModelFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

void read_model(const std::filesystem::path& path, TMOD3D& model) {
    model.read_mode(open_file(path, "r").get());
    if (model.mode_ok == 0) {
        throw std::runtime_error("cannot read the model " + path.string());
    }
}

void bumpy_ball(TMOD3D& model, int faces) {
    int meridians = static_cast<int>(std::sqrt(faces / 2));
    while (faces / 2 % meridians != 0) {
        --meridians;
    }
    const int parallels = faces / 2 / meridians; // between the poles
    const auto at = [&](int parallel, int meridian) {
        return 2 + parallel * meridians + meridian % meridians;
    };
    add_bumpy_point(model, {0, 0, 1});
    add_bumpy_point(model, {0, 0, -1});
    for (int p = 0; p < parallels; ++p) {
        const double tilt = std::numbers::pi * (p + 1) / (parallels + 1);
        for (int m = 0; m < meridians; ++m) {
            const double turn = 2 * std::numbers::pi * m / meridians;
            add_bumpy_point(model, {std::sin(tilt) * std::cos(turn),
                                    std::sin(tilt) * std::sin(turn), std::cos(tilt)});
        }
    }
    add_body(model);
    for (int m = 0; m < meridians; ++m) {
        add_triangle(model, 0, at(0, m), at(0, m + 1));
        for (int p = 1; p < parallels; ++p) {
            add_triangle(model, at(p - 1, m), at(p, m), at(p, m + 1));
            add_triangle(model, at(p - 1, m), at(p, m + 1), at(p - 1, m + 1));
        }
        add_triangle(model, at(parallels - 1, m), 1, at(parallels - 1, m + 1));
    }
}

void bumpy_refined_ball(TMOD3D& model, int rounds) {
    TMOD3D ball;
    double centre[3] = {0, 0, 0};
    double radius[3] = {1, 1, 1};
    ball.inti_mode(centre, radius, 0, rounds);
    for (const VERT3D& vertex : ball.verts) {
        add_bumpy_point(model, {vertex.model_xyz[0], vertex.model_xyz[1], vertex.model_xyz[2]});
    }
    add_body(model);
    for (const POLY3D& face : ball.polys) {
        add_triangle(model, face.verts[0], face.verts[1], face.verts[2]);
    }
}

void prism_set(PLYDT& set, int cell) {
    constexpr int corners[6][2] = {{10, 20}, {50, 5}, {92, 25}, {88, 70}, {47, 90}, {5, 66}};
    const auto [x, y] = cell_origin(cell);
    RING ring;
    for (const auto& corner : corners) {
        VERT2D pt;
        pt.x = x + corner[0];
        pt.y = y + corner[1];
        ring.pts.Add(set.pt_list.Add(pt));
    }
    PLYDT::PyToRg region;
    region.rings.Add(set.ring_list.Add(ring));
    set.region_list.Add(region);
    PLYDT::set_trace_files(false);
    set.region_tranglate();
    set.CoordinatesTrans(1, 0, 0, 0, 0, 1, 1, 0, 50);
}

void prism_field(TMOD3D& model, int bodies) {
    const Silence silence;
    PLYDT set;
    prism_set(set, 0);
    TMOD3D prism;
    prism.create3dmode(set);
    for (int cell = 0; cell < bodies; ++cell) {
        const auto [x, y] = cell_origin(cell);
        add_moved(model, prism, x, y);
    }
}

void read_prism_field(TMOD3D& model, int bodies) {
    TMOD3D field;
    prism_field(field, bodies);
    const ModelFile file(field);
    read_model(file.path(), model);
}

Silence::Silence() : former_(set_message_box_handler([](const char*, unsigned) { return IDOK; })) {}

Silence::~Silence() {
    set_message_box_handler(former_);
}

namespace {

File open_file(const std::filesystem::path& path, const char* mode) {
    File file(std::fopen(path.c_str(), mode), std::fclose);
    if (!file) {
        throw std::runtime_error("cannot open " + path.string());
    }
    return file;
}

void write_off(FILE* file, const TMOD3D& model) {
    std::fprintf(file, "OFF\n%d %d 0\n", model.verts.GetSize(), model.polys.GetSize());
    for (const VERT3D& vertex : model.verts) {
        const double* const at = vertex.model_xyz;
        std::fprintf(file, "%f %f %f\n", at[0], at[1], at[2]);
    }
    for (const POLY3D& face : model.polys) {
        std::fprintf(file, "3 %d %d %d\n", face.verts[0], face.verts[1], face.verts[2]);
    }
}

void add_bumpy_point(TMOD3D& model, Direction d) {
    const double radius =
        100 * (1 + 0.1 * std::sin(7 * d.x + 1) * std::cos(5 * d.y) * std::sin(6 * d.z + 2));
    VERT3D vertex;
    vertex.model_xyz[0] = radius * d.x;
    vertex.model_xyz[1] = radius * d.y;
    vertex.model_xyz[2] = radius * d.z;
    model.verts.Add(vertex);
}

void add_body(TMOD3D& model) {
    BODY3D body;
    model.bodies.Add(body);
}

void add_triangle(TMOD3D& model, int a, int b, int c) {
    POLY3D face;
    for (const int v : {a, b, c}) {
        face.add_a_vert(v);
    }
    model.bodies[model.bodies.GetUpperBound()].polys.Add(model.polys.Add(face));
}

/// The corner of a cell of the chequerboard.
tagPOINT cell_origin(int cell) {
    constexpr int cells_per_row = 128;
    constexpr int spacing = 100;
    return {cell % cells_per_row * spacing, cell / cells_per_row * spacing};
}

/// Appends the vertices and faces of a model of one body, moved by (dx, dy).
void add_moved(TMOD3D& model, TMOD3D& one, double dx, double dy) {
    const int first_vertex = model.verts.GetSize();
    for (const VERT3D& from : one.verts) {
        VERT3D vertex;
        vertex.model_xyz[0] = from.model_xyz[0] + dx;
        vertex.model_xyz[1] = from.model_xyz[1] + dy;
        vertex.model_xyz[2] = from.model_xyz[2];
        model.verts.Add(vertex);
    }
    add_body(model);
    for (const POLY3D& face : one.polys) {
        add_triangle(model, first_vertex + face.verts[0], first_vertex + face.verts[1],
                     first_vertex + face.verts[2]);
    }
}

} // namespace
} // namespace korvel::bench
