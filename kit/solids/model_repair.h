#pragma once

#include <cstdio>
#include <vector>

#include "kit/files/file_kind.h"
#include "kit/files/repair.h"

namespace korvel::kit {

/// Repairs a model that was read whole, all indices in range. In this order: removes faces that
/// have a vertex twice; of faces of a body with the same vertices all but one, or in a closed body
/// as many as leave it closed; joins vertices of open bodies that are at one position; removes
/// bodies without faces and what nothing uses; and turns the faces of closed bodies outward, those
/// that bodies share for one of them. The lines of the records that remain stay
/// those of the file.
void repair_model(FileContents& contents, std::vector<Repair>& out);

/// As `TMOD3D::write_mode` does, but coordinates keep their digits.
void write_model_file(const FileContents& contents, FILE* out);

} // namespace korvel::kit
