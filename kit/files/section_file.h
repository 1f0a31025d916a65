#pragma once

#include "kit/files/records.h"
#include "kit/files/text_file.h"
#include "korvel/module/korvel.h"

// The two layouts of a section file, which differ on purpose: `TMOD2D::readdate` does not read what
// `TMOD2D::writedate` writes. Both are read here from words, with everything checked. Indices may
// come out as -1 where problems are collected.

namespace korvel::kit {

/// What `TMOD2D::readdate` reads: two axes, and two coordinates for each vertex.
RecordLines read_section(WordReader& words, TMOD2D& out);

/// What `TMOD2D::writedate` writes: three coordinates for each vertex, and a 0 after each list.
RecordLines read_written_section(WordReader& words, TMOD2D& out);

} // namespace korvel::kit
