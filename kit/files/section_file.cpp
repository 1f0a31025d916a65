#include "kit/files/section_file.h"

namespace korvel::kit {
namespace {

enum class Layout { read, written };

RecordLines read(WordReader& words, Layout layout, TMOD2D& out);
void read_vertices(WordReader& words, Layout layout, TMOD2D& out, RecordLines& lines);
void read_list(WordReader& words, Layout layout, const char* length, const char* entry, int size,
               CArray<int>& out, std::vector<int>& lines);

} // namespace

RecordLines read_section(WordReader& words, TMOD2D& out) {
    return read(words, Layout::read, out);
}

RecordLines read_written_section(WordReader& words, TMOD2D& out) {
    return read(words, Layout::written, out);
}

namespace {

RecordLines read(WordReader& words, Layout layout, TMOD2D& out) {
    RecordLines lines;
    words.end_before_placement();
    read_vertices(words, layout, out, lines);
    const int faces = words.next_count("the number of faces");
    for (int i = 0; i < faces; ++i) {
        read_list(words, layout, "the number of vertices of a face", "the vertex of a face",
                  out.verts.GetSize(), next_record(out.polys, i, faces).verts, lines.parts);
    }
    const int groups = words.next_count("the number of groups");
    for (int i = 0; i < groups; ++i) {
        read_list(words, layout, "the number of faces of a group", "the face of a group",
                  out.polys.GetSize(), next_record(out.groups, i, groups).polys, lines.wholes);
    }
    words.need_end("the end of the groups");
    return lines;
}

void read_vertices(WordReader& words, Layout layout, TMOD2D& out, RecordLines& lines) {
    const int vertices = words.next_count("the number of vertices");
    std::vector<int> axes = {0, 1, 2};
    if (layout == Layout::read) {
        axes.resize(2);
        for (int& axis : axes) {
            axis = words.next_integer("the axis of a coordinate");
            if (axis < 0 || axis > 2) {
                words.fail("the axis of a coordinate is " + std::to_string(axis) +
                           ", out of range: 0 x, 1 y, 2 z");
            }
        }
    }
    for (int i = 0; i < vertices; ++i) {
        if (words.at_end()) {
            words.fail_short(i, vertices, "vertices");
        }
        VERT3D& vertex = next_record(out.verts, i, vertices);
        for (const int axis : axes) {
            vertex.model_xyz[axis] = words.next_real("the coordinate of a vertex");
        }
        lines.points.push_back(words.line());
    }
}

void read_list(WordReader& words, Layout layout, const char* length, const char* entry, int size,
               CArray<int>& out, std::vector<int>& lines) {
    const int members = words.next_count(length);
    lines.push_back(words.line());
    read_indices(words, members, entry, size, out);
    if (layout == Layout::written) {
        words.next_integer("the number that ends a list");
    }
}

} // namespace
} // namespace korvel::kit
