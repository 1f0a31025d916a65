#include "kit/solids/any_file.h"

#include <memory>
#include <utility>

#include "kit/files/model_file.h"

namespace korvel::kit {
namespace {

AnyFile read_kind(FileKind kind, const TextFile& file, const Context& context);
Solids read_solids(const TextFile& file, const Context& context);

} // namespace

AnyFile read_any(const TextFile& file, const Context& context) {
    for (const FileKind kind : file_kinds()) {
        try {
            return read_kind(kind, file, context);
        } catch (const Error& error) {
            // A file that is whole but for its indices is of no other kind.
            if (error.kind() != Error::Kind::input || is_whole(file, kind)) {
                throw;
            }
        }
    }
    return read_kind(kind_of(file), file, context);
}

namespace {

AnyFile read_kind(FileKind kind, const TextFile& file, const Context& context) {
    if (kind == FileKind::model) {
        return {kind, read_solids(file, context)};
    }
    FileContents contents;
    WordReader words(file);
    read_as(kind, words, contents);
    switch (kind) {
    case FileKind::curves:
        return {kind, Network(contents.curves.pts, contents.curves.counts)};
    case FileKind::regions:
        return {kind, Map(contents.regions)};
    case FileKind::triangles:
        return {kind,
                TriangleSet{contents.triangles, static_cast<int>(contents.lines.wholes.size())}};
    default:
        return {kind, std::move(contents.section)};
    }
}

Solids read_solids(const TextFile& file, const Context& context) {
    const CheckPointScope calls = context.follow_calls();
    auto model = std::make_unique<TMOD3D>();
    if (const auto note = read_model(file, *model)) {
        context.warn(*note);
    }
    return Solids(std::move(model));
}

} // namespace
} // namespace korvel::kit
