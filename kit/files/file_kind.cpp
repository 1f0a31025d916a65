#include "kit/files/file_kind.h"

#include <algorithm>
#include <string_view>

#include "kit/base/errors.h"
#include "kit/files/model_file.h"
#include "kit/files/region_file.h"
#include "kit/files/section_file.h"
#include "kit/files/triangle_file.h"

namespace korvel::kit {
namespace {

std::size_t reach(const TextFile& file, FileKind kind);

} // namespace

const std::vector<FileKind>& file_kinds() {
    static const std::vector<FileKind> kinds = {FileKind::curves,  FileKind::regions,
                                                FileKind::model,   FileKind::written_section,
                                                FileKind::section, FileKind::triangles};
    return kinds;
}

const char* kind_name(FileKind kind) {
    switch (kind) {
    case FileKind::curves:
        return "curve file";
    case FileKind::regions:
        return "polygon-region file";
    case FileKind::model:
        return "body model file";
    case FileKind::section:
        return "section file as readdate reads it";
    case FileKind::written_section:
        return "section file as writedate writes it";
    case FileKind::triangles:
        break;
    }
    return "triangle file";
}

const char* kind_word(FileKind kind) {
    switch (kind) {
    case FileKind::curves:
        return "curves";
    case FileKind::regions:
        return "regions";
    case FileKind::model:
        return "model";
    case FileKind::section:
        return "section";
    case FileKind::written_section:
        return "written-section";
    case FileKind::triangles:
        break;
    }
    return "triangles";
}

void read_as(FileKind kind, WordReader& words, FileContents& out) {
    switch (kind) {
    case FileKind::curves:
        read_curves(words, out.curves, &out.lines.wholes);
        break;
    case FileKind::regions:
        out.lines = read_regions(words, out.regions);
        break;
    case FileKind::model:
        out.lines = read_model(words, out.model);
        break;
    case FileKind::section:
        out.lines = read_section(words, out.section);
        break;
    case FileKind::written_section:
        out.lines = read_written_section(words, out.section);
        break;
    case FileKind::triangles:
        out.lines = read_triangles(words, out.triangles);
        break;
    }
}

FileKind kind_of(const TextFile& file) {
    FileKind farthest = FileKind::curves;
    std::size_t most = 0;
    const bool has_reals = file.text.find('.') != std::string::npos;
    for (const FileKind kind : file_kinds()) {
        const std::size_t read = reach(file, kind);
        if (read > file.text.size()) {
            return kind;
        }
        if (read > most && has_reals) {
            most = read;
            farthest = kind;
        }
    }
    return farthest;
}

bool is_whole(const TextFile& file, FileKind kind) {
    return reach(file, kind) > file.text.size();
}

namespace {

// How many characters of a file fit a kind; one more than there are if all of it does.
std::size_t reach(const TextFile& file, FileKind kind) {
    std::vector<Finding> problems;
    WordReader words(file, &problems);
    FileContents contents;
    try {
        read_as(kind, words, contents);
    } catch (const InputError&) {
        return words.reach();
    }
    return words.has_misfit() ? words.reach() : file.text.size() + 1;
}

} // namespace
} // namespace korvel::kit
