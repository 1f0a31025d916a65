#include "kit/files/findings.h"

#include <algorithm>
#include <string>

#include "kit/base/areas.h"
#include "kit/base/errors.h"
#include "kit/files/region_file.h"

namespace korvel::kit {
namespace {

void check_contents(FileKind kind, const FileContents& contents, Findings& out);
void check_ring(const CCPloy2DRg& set, int ring, int line, Findings& out);
void sort_by_line(std::vector<Finding>& findings);
std::string numbered(const char* thing, int number);

} // namespace

Findings check_file(const TextFile& file, FileKind kind) {
    Findings findings;
    WordReader words(file, &findings.problems);
    FileContents contents;
    try {
        read_as(kind, words, contents);
        check_contents(kind, contents, findings);
    } catch (const InputError&) {
        // The file cannot be read on; the reason is among the problems.
    }
    sort_by_line(findings.problems);
    sort_by_line(findings.notes);
    return findings;
}

void check_curves(const FileContents& contents, Findings& out) {
    const CArray<int>& counts = contents.curves.counts;
    for (int curve = 0; curve < counts.GetSize(); ++curve) {
        if (counts[curve] < 2) {
            out.notes.push_back(
                {contents.lines.wholes[curve],
                 numbered("curve", curve + 1) +
                     (counts[curve] == 0 ? " has no point" : " has only one point")});
        }
    }
}

void check_regions(const FileContents& contents, Findings& out) {
    const CCPloy2DRg& set = contents.regions;
    std::vector<bool> is_point_used(set.pt_list.GetSize(), false);
    std::vector<bool> is_ring_used(set.ring_list.GetSize(), false);
    for (int ring = 0; ring < set.ring_list.GetSize(); ++ring) {
        check_ring(set, ring, contents.lines.parts[ring], out);
        for (const int point : set.ring_list[ring].pts) {
            if (point >= 0) {
                is_point_used[point] = true;
            }
        }
    }
    for (int region = 0; region < set.region_list.GetSize(); ++region) {
        const CArray<int>& rings = set.region_list[region].rings;
        if (rings.IsEmpty()) {
            out.problems.push_back(
                {contents.lines.wholes[region], numbered("region", region) + " has no ring"});
        }
        for (const int ring : rings) {
            if (ring >= 0) {
                is_ring_used[ring] = true;
            }
        }
    }
    note_unused(is_point_used, contents.lines.points, "point", "ring", out);
    note_unused(is_ring_used, contents.lines.parts, "ring", "region", out);
    if (const auto change = first_change(set, contents.lines)) {
        out.notes.push_back(*change);
    }
}

void check_triangles(const FileContents& contents, Findings& out) {
    const PLYDT& set = contents.triangles;
    for (int i = 0; i < set.trg_list.GetSize(); ++i) {
        const PLYDT::TRG& t = set.trg_list[i];
        if (std::min({t.va, t.vb, t.vc}) >= 0 && (t.va == t.vb || t.vb == t.vc || t.vc == t.va)) {
            out.problems.push_back(
                {contents.lines.parts[i], numbered("triangle", i) + " has a point twice"});
        }
    }
}

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

void note_unused(const std::vector<bool>& is_used, const std::vector<int>& lines,
                 const char* things, const char* wholes, Findings& out) {
    const auto unused = std::count(is_used.begin(), is_used.end(), false);
    if (unused == 0) {
        return;
    }
    const auto first = std::find(is_used.begin(), is_used.end(), false) - is_used.begin();
    const int line = lines[static_cast<std::size_t>(first)];
    const std::string name = numbered(things, static_cast<int>(first));
    if (unused == 1) {
        out.notes.push_back({line, name + " belongs to no " + wholes});
    } else {
        out.notes.push_back(
            {line, name + " and " + std::to_string(unused - 1) + " more belong to no " + wholes});
    }
}

namespace {

void check_contents(FileKind kind, const FileContents& contents, Findings& out) {
    switch (kind) {
    case FileKind::curves:
        check_curves(contents, out);
        break;
    case FileKind::regions:
        check_regions(contents, out);
        break;
    case FileKind::model:
        check_model(contents, out);
        break;
    case FileKind::section:
    case FileKind::written_section:
        check_section(contents, out);
        break;
    case FileKind::triangles:
        check_triangles(contents, out);
        break;
    }
}

void check_ring(const CCPloy2DRg& set, int ring, int line, Findings& out) {
    const CArray<int>& points = set.ring_list[ring].pts;
    if (points.GetSize() < 3) {
        out.problems.push_back({line, numbered("ring", ring) + " has " +
                                          std::to_string(points.GetSize()) +
                                          " points, it encloses nothing"});
    } else if (std::find(points.begin(), points.end(), -1) == points.end() &&
               twice_area<double>(set.pt_list, set.ring_list[ring]) == 0) {
        out.problems.push_back({line, numbered("ring", ring) + " encloses no area"});
    }
}

void sort_by_line(std::vector<Finding>& findings) {
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& a, const Finding& b) { return a.line < b.line; });
}

std::string numbered(const char* thing, int number) {
    return std::string(thing) + " " + std::to_string(number);
}

} // namespace
} // namespace korvel::kit
