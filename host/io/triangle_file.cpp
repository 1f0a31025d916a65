#include "host/io/triangle_file.h"

#include "host/io/text_file.h"

namespace korvel::host {
void write_triangles(const PLYDT& set, const std::vector<int>& ends, FILE* out) {
    std::fprintf(out, "%d\n", set.pt_list.GetSize());
    for (const VERT2D& point : set.pt_list) {
        std::fprintf(out, "%s %s\n", shortest(point.x).c_str(), shortest(point.y).c_str());
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

} // namespace korvel::host
