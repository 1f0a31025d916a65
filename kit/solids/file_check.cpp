#include "kit/solids/file_check.h"

#include <algorithm>

#include "kit/base/error.h"
#include "kit/files/body_names.h"
#include "kit/files/placement_line.h"
#include "kit/maps/map_check.h"
#include "kit/solids/model_check.h"
#include "kit/solids/section_check.h"

namespace korvel::kit {
namespace {

void add_findings(FileKind kind, const FileContents& contents, Findings& out);
void sort_by_line(std::vector<Finding>& findings);

} // namespace

Findings check_file(const TextFile& file, FileKind kind) {
    Findings findings;
    WordReader words(file, &findings.problems);
    FileContents contents;
    try {
        read_as(kind, words, contents);
        add_findings(kind, contents, findings);
        if (kind == FileKind::model) {
            read_body_names(file, contents.model.bodies.GetSize(), &findings.problems);
        }
    } catch (const Error&) {
        // The file cannot be read on; the reason is among the problems.
    }
    if (stores_placement(kind)) {
        read_placement(file, &findings.problems);
    }
    sort_by_line(findings.problems);
    sort_by_line(findings.notes);
    return findings;
}

Findings check_contents(const FileContents& contents, FileKind kind) {
    Findings findings;
    add_findings(kind, contents, findings);
    sort_by_line(findings.problems);
    sort_by_line(findings.notes);
    return findings;
}

namespace {

void add_findings(FileKind kind, const FileContents& contents, Findings& out) {
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

void sort_by_line(std::vector<Finding>& findings) {
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& a, const Finding& b) { return a.line < b.line; });
}

} // namespace
} // namespace korvel::kit
