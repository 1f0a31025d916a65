#include "kit/files/file_kind.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "kit/files/model_file.h"
#include "kit/files/region_file.h"
#include "kit/files/section_file.h"
#include "kit/files/triangle_file.h"

namespace korvel::kit {
namespace {

/// The names of a kind: in messages and as an argument.
struct KindNames {
    FileKind kind;
    const char* name;
    const char* word;
};

constexpr std::array<KindNames, 6> all_names = {{
    {FileKind::curves, "curve file", "curves"},
    {FileKind::regions, "polygon-region file", "regions"},
    {FileKind::model, "body model file", "model"},
    {FileKind::written_section, "section file as writedate writes it", "written-section"},
    {FileKind::section, "section file as readdate reads it", "section"},
    {FileKind::triangles, "triangle file", "triangles"},
}};

const KindNames& names_of(FileKind kind);
std::size_t reach(const TextFile& file, FileKind kind);
bool is_faultless(const TextFile& file, FileKind kind);

} // namespace

const std::vector<FileKind>& file_kinds() {
    static const std::vector<FileKind> kinds = [] {
        std::vector<FileKind> all;
        all.reserve(all_names.size());
        for (const KindNames& names : all_names) {
            all.push_back(names.kind);
        }
        return all;
    }();
    return kinds;
}

std::vector<FileKind> kinds_to_try(const TextFile& file) {
    std::vector<FileKind> kinds = file_kinds();
    if (file.text.find('.') != std::string::npos) {
        std::rotate(kinds.begin(), kinds.begin() + 1, kinds.end());
    }
    return kinds;
}

const char* kind_name(FileKind kind) {
    return names_of(kind).name;
}

const char* kind_word(FileKind kind) {
    return names_of(kind).word;
}

bool stores_placement(FileKind kind) {
    return kind != FileKind::curves && kind != FileKind::triangles;
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
    for (const FileKind kind : kinds_to_try(file)) {
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

bool holds_regions(const TextFile& file) {
    WordReader words(file);
    words.skip_comments();
    words.next();
    const bool has_reals = words.next().find('.') != std::string_view::npos;
    // A curve file rarely follows the other kind for long.
    return has_reals || (is_whole(file, FileKind::regions) && !is_whole(file, FileKind::curves));
}

void refuse_other_kind(const TextFile& file, std::initializer_list<FileKind> expected) {
    std::string names;
    for (const FileKind kind : expected) {
        names.append(names.empty() ? "a " : " or a ").append(kind_name(kind));
    }
    for (const FileKind kind : file_kinds()) {
        if (std::find(expected.begin(), expected.end(), kind) == expected.end() &&
            is_faultless(file, kind)) {
            throw input_error(file.name + ": a " + kind_name(kind) + ", where " + names +
                                  " is expected",
                              {.file = file.name});
        }
    }
}

namespace {

const KindNames& names_of(FileKind kind) {
    return *std::find_if(all_names.begin(), all_names.end(),
                         [&](const KindNames& names) { return names.kind == kind; });
}

// How many characters of a file fit a kind; one more than there are if all of it does.
std::size_t reach(const TextFile& file, FileKind kind) {
    WordReader words(file);
    words.allow_any_index();
    FileContents contents;
    try {
        read_as(kind, words, contents);
    } catch (const Error&) {
        return words.reach();
    }
    return file.text.size() + 1;
}

// Whether all of a file with more than a count can be read as a kind, its indices in range.
bool is_faultless(const TextFile& file, FileKind kind) {
    WordReader words(file);
    FileContents contents;
    try {
        read_as(kind, words, contents);
    } catch (const Error&) {
        return false;
    }
    return words.count() > 1;
}

} // namespace
} // namespace korvel::kit
