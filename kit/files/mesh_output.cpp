// Outputs of meshes: complete or absent, also the two files of an OBJ with colours.

#include <optional>
#include <string>

#include "kit/base/error.h"
#include "kit/base/system_files.h"
#include "kit/files/mesh_files.h"
#include "kit/files/mesh_readers.h"
#include "kit/files/mesh_triangulation.h"
#include "kit/files/output_file.h"

namespace korvel::kit {
namespace fs = std::filesystem;
namespace {

MeshFormat format_to_write(const fs::path& target, std::optional<MeshFormat> format);
fs::path materials_of(const fs::path& target);
bool has_only_triangles(MeshFormat format);
void write_as(MeshFormat format, const Mesh& mesh, const std::string& materials, OutputFile& out);

} // namespace

class MeshOutput::Files {
public:
    explicit Files(const fs::path& target) : mesh(target) {}

    OutputFile mesh;
    std::optional<OutputFile> materials;
};

void write_mesh(const Mesh& mesh, const fs::path& file, std::optional<MeshFormat> format) {
    MeshOutput(mesh, file, format).replace();
}

void MeshOutput::check(const fs::path& target, std::optional<MeshFormat> format) {
    OutputFile::check(target);
    if (format_to_write(target, format) == MeshFormat::obj && !is_device(target)) {
        OutputFile::check(materials_of(target));
    }
}

MeshOutput::MeshOutput(const Mesh& mesh, const fs::path& target, std::optional<MeshFormat> format) {
    const MeshFormat as = format_to_write(target, format);
    files_ = std::make_unique<Files>(target);
    const bool is_divided = !mesh.face_ends.empty() && has_only_triangles(as);
    const Mesh divided = is_divided ? triangulated(mesh) : Mesh();
    const Mesh& written = is_divided ? divided : mesh;
    std::string materials;
    // What goes to a device is one file.
    if (as == MeshFormat::obj && has_materials(mesh) && !is_device(target)) {
        materials = text_of(materials_of(target).filename());
        files_->materials.emplace(materials_of(target));
        write_mtl(mesh, *files_->materials);
        files_->materials->close();
    }
    write_as(as, written, materials, files_->mesh);
    files_->mesh.close();
}

MeshOutput::~MeshOutput() = default;

// The mesh comes last, so that it is new only if its materials are.
void MeshOutput::replace() {
    if (files_->materials) {
        files_->materials->replace();
    }
    files_->mesh.replace();
}

namespace {

MeshFormat format_to_write(const fs::path& target, std::optional<MeshFormat> format) {
    if (!format) {
        format = mesh_format(target);
    }
    const auto fail = [&](const std::string& message) {
        throw input_error(text_of(target) + ": " + message,
                          {.file = text_of(target), .value = text_of(target.extension())});
    };
    if (!format) {
        fail("the suffix selects no format of meshes");
    }
    if (format == MeshFormat::obj && materials_of(target) == target) {
        fail("the suffix .mtl is that of the materials of an OBJ");
    }
    return *format;
}

fs::path materials_of(const fs::path& target) {
    return fs::path(target).replace_extension(".mtl");
}

bool has_only_triangles(MeshFormat format) {
    return format == MeshFormat::stl || format == MeshFormat::stl_text || format == MeshFormat::glb;
}

void write_as(MeshFormat format, const Mesh& mesh, const std::string& materials, OutputFile& out) {
    switch (format) {
    case MeshFormat::stl:
    case MeshFormat::stl_text:
        return write_stl(mesh, format == MeshFormat::stl_text, out);
    case MeshFormat::ply:
    case MeshFormat::ply_text:
        return write_ply(mesh, format == MeshFormat::ply_text, out);
    case MeshFormat::off:
        return write_off(mesh, out);
    case MeshFormat::obj:
        return write_obj(mesh, materials, out);
    case MeshFormat::glb:
        return write_glb(mesh, out);
    }
}

} // namespace
} // namespace korvel::kit
