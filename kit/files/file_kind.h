#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "kit/base/error.h"
#include "kit/files/curve_file.h"
#include "kit/files/records.h"
#include "kit/files/text_file.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// The files that the command and the library read and write.
enum class FileKind { curves, regions, model, section, written_section, triangles };

/// Every kind.
const std::vector<FileKind>& file_kinds();

/// Every kind, in the order in which a file that could be several is taken for one: curves come
/// first, or last if the file has a decimal point, because all others have decimals more often.
std::vector<FileKind> kinds_to_try(const TextFile& file);

/// "curve file", …
const char* kind_name(FileKind kind);

/// "curves", "regions", "model", …: a kind as an argument names it.
const char* kind_word(FileKind kind);

/// Whether files of a kind may end with the line of a placement: regions, models and sections.
bool stores_placement(FileKind kind);

/// The contents of a file of some kind; the other members stay empty. Nothing is derived.
struct FileContents {
    CurveNetwork curves;
    CCPloy2DRg regions;
    TMOD3D model;
    TMOD2D section;
    PLYDT triangles;
    std::vector<std::string> names; ///< of the model's bodies; empty if they have none
    RecordLines lines;              ///< of curves, the lines of their counts are the `wholes`
};

/// Reads words as a file of a kind.
void read_as(FileKind kind, WordReader& words, FileContents& out);

/// What a file is: the first kind as which it can be read from beginning to end, whatever its
/// indices. A damaged file is taken for the kind that it follows the farthest, but for a curve file
/// if it holds integers only.
FileKind kind_of(const TextFile& file);

/// Whether all of a file can be read as that kind, whatever its indices.
bool is_whole(const TextFile& file, FileKind kind);

/// Of a file that is either: true for a polygon-region file, false for a curve file. A curve file
/// contains integers only; a polygon-region file contains reals, so that its second word, the x of
/// the first point, has a decimal point. One of integers only is recognized if it is whole and no
/// curve file.
bool holds_regions(const TextFile& file);

/// For a file that could not be read as one of the expected kinds: throws "FILE: a curve file,
/// where a body model file is expected" if it is a faultless file of another kind. Takes as long as
/// reading the file.
void refuse_other_kind(const TextFile& file, std::initializer_list<FileKind> expected);

/// Returns what `read` returns, which reads the file as one of the expected kinds. When it throws
/// an input error and the file is of another kind, that is the error instead.
template <class Read>
auto read_expecting(std::initializer_list<FileKind> expected, const TextFile& file, Read read) {
    try {
        return read();
    } catch (const Error& error) {
        if (error.kind() == Error::Kind::input) {
            refuse_other_kind(file, expected);
        }
        throw;
    }
}

} // namespace korvel::kit
