#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kit/base/context.h"
#include "kit/files/mesh.h"

// Files of meshes as other programs read and write them.

namespace korvel::kit {

enum class MeshFormat { stl, stl_text, ply, ply_text, obj, off, glb };

/// A format of files of meshes. A text form is selected by its name only; reading takes either.
struct MeshFormatInfo {
    MeshFormat format = MeshFormat::stl;
    std::string name;   ///< "STL", "STL-text", "PLY", "PLY-text", "OBJ", "OFF", "GLB"
    std::string title;  ///< "STL, binary", …
    std::string suffix; ///< ".stl", …; empty for the text forms
};

/// All formats, in the order of the enumeration.
const std::vector<MeshFormatInfo>& mesh_formats();

/// The format that a file's suffix selects, in small or capital letters.
std::optional<MeshFormat> mesh_format(const std::filesystem::path& file);

/// The format of that name, in small or capital letters.
std::optional<MeshFormat> mesh_format_named(const std::string& name);

/// Whether a file is one of a mesh: by its suffix, or by its first bytes if they are those of PLY,
/// OFF, glTF or text STL.
bool holds_mesh(const std::filesystem::path& file);

/// Reads a mesh. `format` is that of the suffix, or detected from the first bytes, if it is not
/// given. Warns of what is left out. Throws an `Error` that names the file, and place and value of
/// the first thing that does not fit.
Mesh read_mesh(const std::filesystem::path& file, std::optional<MeshFormat> format = {},
               const Context& context = {});

/// The same from an open stream; `name` is that in messages.
Mesh read_mesh(FILE* stream, const std::string& name, std::optional<MeshFormat> format = {},
               const Context& context = {});

/// Writes a mesh, into the two files of an OBJ with colours if it has any, which replace their
/// targets when they are complete. The format is that of the suffix if it is not given.
void write_mesh(const Mesh& mesh, const std::filesystem::path& file,
                std::optional<MeshFormat> format = {});

/// Files that are written beside their targets and put in place by `replace`; without it they go
/// away.
class MeshOutput {
public:
    /// Throws when the target cannot be written in the format, as far as that shows beforehand.
    static void check(const std::filesystem::path& target, std::optional<MeshFormat> format = {});

    MeshOutput(const Mesh& mesh, const std::filesystem::path& target,
               std::optional<MeshFormat> format = {});
    ~MeshOutput();
    MeshOutput(const MeshOutput&) = delete;
    MeshOutput& operator=(const MeshOutput&) = delete;

    void replace();

private:
    class Files;
    std::unique_ptr<Files> files_;
};

} // namespace korvel::kit
