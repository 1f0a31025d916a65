#include "kit/solids/any_file.h"

#include <utility>

#include "kit/files/placement_line.h"
#include "kit/solids/placed_model.h"

namespace korvel::kit {
namespace {

AnyFile read_kind(FileKind kind, const TextFile& file, const Context& context);
AnyFile read_solids(const TextFile& file, const Context& context);

} // namespace

AnyFile read_any(const TextFile& file, const Context& context) {
    for (const FileKind kind : kinds_to_try(file)) {
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
        return read_solids(file, context);
    }
    FileContents contents;
    WordReader words(file);
    if (kind == FileKind::curves) {
        Network network(read_curves(file));
        const Placement placement = network.placement();
        return {kind, std::move(network), placement};
    }
    read_as(kind, words, contents);
    switch (kind) {
    case FileKind::regions:
        return {kind, Map(contents.regions, read_placement(file)), read_placement(file)};
    case FileKind::triangles:
        return {kind,
                TriangleSet{contents.triangles, static_cast<int>(contents.lines.wholes.size())}};
    default: {
        const Placement placement = read_placement(file);
        to_user(placement.grid, contents.section);
        return {kind, std::move(contents.section), placement};
    }
    }
}

AnyFile read_solids(const TextFile& file, const Context& context) {
    Solids solids = Solids::read(file, context);
    const Placement placement = solids.placement();
    return {FileKind::model, std::move(solids), placement};
}

} // namespace
} // namespace korvel::kit
