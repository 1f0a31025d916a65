#include "kit/solids/section_check.h"

#include <string>

namespace korvel::kit {

void check_section(const FileContents& contents, Findings& out) {
    const TMOD2D& section = contents.section;
    for (int face = 0; face < section.polys.GetSize(); ++face) {
        const int corners = section.polys[face].verts.GetSize();
        if (corners < 3) {
            out.problems.push_back({contents.lines.parts[face],
                                    numbered("face", face) + " has " + std::to_string(corners) +
                                        " vertices, it encloses nothing"});
        }
    }
    for (int group = 0; group < section.groups.GetSize(); ++group) {
        if (section.groups[group].polys.IsEmpty()) {
            out.problems.push_back(
                {contents.lines.wholes[group], numbered("group", group) + " has no face"});
        }
    }
}

} // namespace korvel::kit
