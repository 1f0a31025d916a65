#include "kit/files/triangle_file.h"

namespace korvel::kit {

void write_triangles(const PLYDT& set, const std::vector<int>& ends, FILE* out, const Grid& grid) {
    std::fprintf(out, "%d\n", set.pt_list.GetSize());
    for (const VERT2D& point : set.pt_list) {
        const Point2 user = grid.to_user(Point2{point.x, point.y});
        std::fprintf(out, "%s %s\n", shortest_digits(user[0]).c_str(),
                     shortest_digits(user[1]).c_str());
    }
    std::fprintf(out, "%zu\n", ends.size());
    int next = 0;
    for (const int end : ends) {
        std::fprintf(out, "%d\n", end - next);
        for (; next < end; ++next) {
            const PLYDT::TRG& triangle = set.trg_list[next];
            std::fprintf(out, "%d %d %d\n", triangle.va, triangle.vb, triangle.vc);
        }
    }
}

RecordLines read_triangles(WordReader& words, PLYDT& out) {
    RecordLines lines;
    lines.points = read_plane_points(words, out.pt_list);
    const int points = out.pt_list.GetSize();
    const int regions = words.next_count("the number of regions");
    for (int i = 0; i < regions; ++i) {
        const int triangles = words.next_count("the number of triangles of a region");
        lines.wholes.push_back(words.line());
        for (int k = 0; k < triangles; ++k) {
            PLYDT::TRG triangle;
            for (int* const corner : {&triangle.va, &triangle.vb, &triangle.vc}) {
                *corner = words.next_index("the point of a triangle", points);
            }
            out.trg_list.Add(triangle);
            lines.parts.push_back(words.line());
        }
    }
    words.need_end("the end of the triangles");
    return lines;
}

} // namespace korvel::kit
