#include "kit/solids/file_repair.h"

#include "kit/base/error.h"
#include "kit/files/body_names.h"
#include "kit/files/placement_line.h"
#include "kit/maps/map_repair.h"
#include "kit/solids/file_check.h"
#include "kit/solids/model_repair.h"

namespace korvel::kit {

bool is_repairable(FileKind kind) {
    return kind == FileKind::curves || kind == FileKind::regions || kind == FileKind::model;
}

RepairedFile repair_file(const TextFile& file, FileKind kind) {
    RepairedFile repaired;
    repaired.kind = kind;
    WordReader words(file, &repaired.remaining.problems);
    try {
        read_as(kind, words, repaired.contents);
        if (kind == FileKind::model) {
            repaired.contents.names = read_body_names(
                file, repaired.contents.model.bodies.GetSize(), &repaired.remaining.problems);
        }
    } catch (const Error&) {
        // The reason is among the problems.
    }
    if (stores_placement(kind)) {
        repaired.placement = read_placement(file, &repaired.remaining.problems);
    }
    if (!repaired.is_sound()) {
        return repaired;
    }
    if (kind == FileKind::curves) {
        repair_curves(repaired.contents, repaired.repairs);
    } else if (kind == FileKind::regions) {
        repair_regions(repaired.contents, repaired.repairs);
    } else if (kind == FileKind::model) {
        repair_model(repaired.contents, repaired.repairs);
    }
    repaired.remaining = check_contents(repaired.contents, kind);
    return repaired;
}

void RepairedFile::write(OutputFile& out) const {
    if (kind == FileKind::curves) {
        write_curve_file(contents, out.stream());
    } else if (kind == FileKind::regions) {
        write_region_file(contents, out.stream());
    } else if (kind == FileKind::model) {
        write_model_file(contents, out.stream());
        std::fputs(body_name_lines(contents.names).c_str(), out.stream());
    }
    std::fputs(placement_line(placement).c_str(), out.stream());
}

} // namespace korvel::kit
