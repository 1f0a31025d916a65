#pragma once

#include <vector>

#include "kit/base/placement.h"
#include "kit/files/file_kind.h"
#include "kit/files/findings.h"
#include "kit/files/output_file.h"
#include "kit/files/repair.h"

namespace korvel::kit {

/// A file after its repair.
struct RepairedFile {
    FileKind kind = FileKind::curves;
    FileContents contents;
    Placement placement = {};    ///< stays as it is
    std::vector<Repair> repairs; ///< empty if there was nothing to repair
    Findings remaining;          ///< what was not repaired, by the lines of the file

    bool is_sound() const { return remaining.problems.empty(); }

    /// Writes the repaired file, which a check finds sound if `is_sound`. Without comments.
    void write(OutputFile& out) const;
};

/// Whether files of a kind can be repaired: curves, regions and models.
bool is_repairable(FileKind kind);

/// Repairs a file of a repairable kind: see `repair_curves`, `repair_regions` and `repair_model`.
/// A file with words that cannot be read or indices out of range is not repaired at all.
/// Near-linear.
RepairedFile repair_file(const TextFile& file, FileKind kind);

} // namespace korvel::kit
