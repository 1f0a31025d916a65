// The section file. What the writer gives and what the reader takes differ, on purpose: the
// reader's files name two axes and give two coordinates a vertex, the writer's give three.

#include <algorithm>
#include <cstdio>

#include "korvel/base/text_reader.h"
#include "korvel/section/tmod2d.h"

using korvel::Progress;

void TMOD2D::readdate(FILE* stream) {
    if (stream == nullptr) {
        return;
    }
    korvel::TextReader reader(stream);
    int vertices = 0;
    if (!reader.read(vertices) || vertices < 0) {
        return;
    }
    int axes[2] = {};
    const bool has_axes = reader.read(axes[0]) && reader.read(axes[1]);
    // A coordinate along anything but x, y or z is read and dropped.
    const auto read_coordinate = [&](VERT3D& vert, int axis) {
        double dropped = 0;
        return reader.read(axis >= 0 && axis < 3 ? vert.model_xyz[axis] : dropped);
    };
    const auto read_vertex = [&](VERT3D& vert) {
        if (!has_axes || !read_coordinate(vert, axes[0])) {
            return Progress::nothing;
        }
        return read_coordinate(vert, axes[1]) ? Progress::all : Progress::part;
    };
    const auto read_faces = [&] {
        int faces = 0;
        return reader.read(faces) &&
               (faces < 1 || korvel::read_records(faces, polys, [&](POLY3D& face) {
                    return korvel::read_counted_ints(reader, face.verts);
                }));
    };
    const auto read_groups = [&] {
        int count = 0;
        return reader.read(count) &&
               (count < 1 || korvel::read_records(count, groups, [&](POLY3D_CPLX& group) {
                    return korvel::read_counted_ints(reader, group.polys);
                }));
    };
    if (korvel::read_records(vertices, verts, read_vertex) && read_faces()) {
        read_groups();
    }
}

void TMOD2D::writedate(FILE* stream) {
    if (stream == nullptr) {
        return;
    }
    // A list too short for its count is filled up with 0; the 0 that ends the line means nothing.
    const auto write_list = [&](const CArray<int>& list, int count) {
        std::fprintf(stream, "%d\n", count);
        for (int i = 0; i < count; ++i) {
            std::fprintf(stream, "%d ", i < list.GetSize() ? list[i] : 0);
        }
        std::fprintf(stream, "0\n");
    };
    std::fprintf(stream, "%d\n", verts.GetSize());
    for (const VERT3D& vert : verts) {
        const double* p = vert.model_xyz;
        std::fprintf(stream, "%f %f %f\n", p[0], p[1], p[2]);
    }
    std::fprintf(stream, "%d\n", polys.GetSize());
    for (const POLY3D& face : polys) {
        write_list(face.verts, face.verts.GetSize());
    }
    // Each group is written with the size of the last face, not with its own.
    const int count = polys.IsEmpty() ? 0 : polys[polys.GetUpperBound()].verts.GetSize();
    std::fprintf(stream, "%d\n", groups.GetSize());
    for (const POLY3D_CPLX& group : groups) {
        write_list(group.polys, count);
    }
}
