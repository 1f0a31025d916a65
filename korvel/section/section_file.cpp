// The section file. The writer's format and the reader's differ, on purpose: the reader's files
// name two axes and contain two coordinates per vertex, the writer's contain three.

#include <cstdio>

#include "korvel/base/text_reader.h"
#include "korvel/section/tmod2d.h"

using korvel::TextReader;

namespace {

bool read_vertex(TextReader& reader, const int (&axes)[2], VERT3D& vert);

template <class Record>
void read_lists(TextReader& reader, CArray<Record, Record&>& records, CArray<int> Record::*list);

} // namespace

void TMOD2D::readdate(FILE* stream) {
    constexpr int least_vertex = 4; // bytes, for two reals
    if (stream == nullptr) {
        return;
    }
    TextReader reader(stream);
    int vertices = 0;
    if (!reader.read(vertices) || vertices < 0) {
        return;
    }
    int axes[2] = {};
    if (reader.read(axes[0])) {
        reader.read(axes[1]);
    }
    korvel::read_declared_records(reader, vertices, least_vertex, verts,
                                  [&](VERT3D& vert) { return read_vertex(reader, axes, vert); });
    read_lists(reader, polys, &POLY3D::verts);
    read_lists(reader, groups, &POLY3D_CPLX::polys);
}

namespace {

/// Reads two coordinates; one along anything but x, y or z is dropped.
bool read_vertex(TextReader& reader, const int (&axes)[2], VERT3D& vert) {
    bool has_read = false;
    for (const int axis : axes) {
        double dropped = 0;
        has_read |= reader.read(axis >= 0 && axis < 3 ? vert.model_xyz[axis] : dropped);
    }
    return has_read;
}

/// Reads a count and then one list of integers for each record; a count below 1 leaves the records
/// as they are.
template <class Record>
void read_lists(TextReader& reader, CArray<Record, Record&>& records, CArray<int> Record::*list) {
    constexpr int least_list = 2; // bytes, for a count
    int count = 0;
    if (reader.read(count) && count > 0) {
        korvel::read_declared_records(reader, count, least_list, records, [&](Record& record) {
            return korvel::read_declared_ints(reader, record.*list);
        });
    }
}

} // namespace

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
    std::fprintf(stream, "%d\n", korvel::size_of(verts));
    for (const VERT3D& vert : verts) {
        const double* p = vert.model_xyz;
        std::fprintf(stream, "%f %f %f\n", p[0], p[1], p[2]);
    }
    std::fprintf(stream, "%d\n", korvel::size_of(polys));
    for (const POLY3D& face : polys) {
        write_list(face.verts, face.verts.GetSize());
    }
    // Each group is written with the size of the last face, not with its own.
    const int count = polys.IsEmpty() ? 0 : polys[polys.GetUpperBound()].verts.GetSize();
    std::fprintf(stream, "%d\n", korvel::size_of(groups));
    for (const POLY3D_CPLX& group : groups) {
        write_list(group.polys, count);
    }
}
