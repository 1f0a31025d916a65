#pragma once

#include "kit/files/mesh_files.h"
#include "kit/files/output_file.h"

// The readers and writers of the formats. Each reader takes the input from its first byte.

namespace korvel::kit {

class ByteInput;

Mesh read_stl(ByteInput& input);
Mesh read_ply(ByteInput& input);
Mesh read_off(ByteInput& input);
Mesh read_glb(ByteInput& input);

/// `folder` is where the material files are that the file names; without it colours are not read.
Mesh read_obj(ByteInput& input, const std::filesystem::path& folder);

void write_stl(const Mesh& mesh, bool as_text, OutputFile& out);
void write_ply(const Mesh& mesh, bool as_text, OutputFile& out);
void write_off(const Mesh& mesh, OutputFile& out);
void write_glb(const Mesh& mesh, OutputFile& out); ///< of triangles

/// `materials` is the name of the material file beside it; empty: without colours.
void write_obj(const Mesh& mesh, const std::string& materials, OutputFile& out);
void write_mtl(const Mesh& mesh, OutputFile& out);

/// Whether parts or faces have colours, which OBJ has in a file of its own.
bool has_materials(const Mesh& mesh);

} // namespace korvel::kit
