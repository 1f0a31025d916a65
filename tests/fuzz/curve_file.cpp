// The kit's readers: a file of any kind is checked, repaired, read through the library, or refused.

#include <cstdlib>
#include <cstring>

#include "kit/base/error.h"
#include "kit/files/file_kind.h"
#include "kit/files/point_file.h"
#include "kit/solids/file_check.h"
#include "kit/solids/file_repair.h"
#include "kit/solids/placed_model.h"
#include "kit/solids/section.h"
#include "kit/solids/surface.h"
#include "tests/fuzz/exercise.h"

namespace {

using namespace korvel::kit;

void read_all(const TextFile& file) {
    kind_of(file);
    for (const FileKind kind : file_kinds()) {
        check_file(file, kind);
        if (is_repairable(kind)) {
            repair_file(file, kind);
        }
        try {
            FileContents contents;
            WordReader words(file);
            read_as(kind, words, contents);
        } catch (const Error&) {
            // The file is of another kind, or damaged.
        }
    }
}

void read_points_of(const TextFile& file) {
    for (const int dimensions : {2, 3}) {
        try {
            read_points(file, dimensions);
        } catch (const Error&) {
            // A line does not fit.
        }
    }
}

// The library must read what passes the checks.
void read_through_library(const TextFile& file) {
    try {
        TMOD3D model;
        Placement placement;
        read_placed_model(file, model, placement);
        surfaces(model);
        cut_model(model, {0, 0, 1, -1.5});
        write_placed_model(model, placement, korvel::test::nowhere());
    } catch (const Error& error) {
        if (std::strstr(error.what(), "the library does not read") != nullptr) {
            std::abort();
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TextFile file("/dev/null");
    file.text.assign(reinterpret_cast<const char*>(data), size);
    read_all(file);
    read_points_of(file);
    read_through_library(file);
    return 0;
}
