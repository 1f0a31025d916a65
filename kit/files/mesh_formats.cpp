// The formats of meshes: how they are recognized, and which reader takes them.

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>
#include <system_error>

#include "kit/base/error.h"
#include "kit/base/system_files.h"
#include "kit/files/byte_input.h"
#include "kit/files/mesh_files.h"
#include "kit/files/mesh_readers.h"
#include "kit/files/text_file.h"
#include "kit/files/text_scan.h"

namespace korvel::kit {
namespace fs = std::filesystem;
namespace {

using MeshStream = std::unique_ptr<FILE, int (*)(FILE*)>;

/// As which file name extension the text form of glTF is known, which no reader takes.
constexpr const char* gltf_suffix = ".gltf";

std::string in_small(std::string text);
Mesh read_mesh_from(ByteInput& input, std::optional<MeshFormat> format, const fs::path& folder);
MeshFormat detected_format(ByteInput& input);
std::optional<MeshFormat> format_of_start(std::string_view start);

} // namespace

const std::vector<MeshFormatInfo>& mesh_formats() {
    static const std::vector<MeshFormatInfo> formats = {
        {MeshFormat::stl, "STL", "STL, binary", ".stl"},
        {MeshFormat::stl_text, "STL-text", "STL, text", ""},
        {MeshFormat::ply, "PLY", "PLY, binary", ".ply"},
        {MeshFormat::ply_text, "PLY-text", "PLY, text", ""},
        {MeshFormat::obj, "OBJ", "Wavefront OBJ", ".obj"},
        {MeshFormat::off, "OFF", "Object File Format", ".off"},
        {MeshFormat::glb, "GLB", "glTF, binary", ".glb"},
    };
    return formats;
}

std::optional<MeshFormat> mesh_format(const fs::path& file) {
    const std::string suffix = in_small(text_of(file.extension()));
    for (const MeshFormatInfo& info : mesh_formats()) {
        if (!suffix.empty() && info.suffix == suffix) {
            return info.format;
        }
    }
    return {};
}

std::optional<MeshFormat> mesh_format_named(const std::string& name) {
    for (const MeshFormatInfo& info : mesh_formats()) {
        if (in_small(info.name) == in_small(name)) {
            return info.format;
        }
    }
    return {};
}

// A pipe cannot be looked into beforehand.
bool holds_mesh(const fs::path& file) {
    if (mesh_format(file) || in_small(text_of(file.extension())) == gltf_suffix) {
        return true;
    }
    const MeshStream stream(is_device(file) ? nullptr : open_file(file, "rb"), std::fclose);
    std::string start(64, '\0');
    start.resize(stream ? std::fread(start.data(), 1, start.size(), stream.get()) : 0);
    return format_of_start(start).has_value();
}

Mesh read_mesh(const fs::path& file, std::optional<MeshFormat> format, const Context& context) {
    const std::string name = text_of(file);
    const MeshStream stream(open_file(file, "rb"), std::fclose);
    if (!stream) {
        throw input_error(name + ": cannot be read: " + std::generic_category().message(errno),
                          {.file = name});
    }
    ByteInput input(stream.get(), name, context);
    const fs::path folder = file.parent_path();
    return read_mesh_from(input, format ? format : mesh_format(file),
                          folder.empty() ? fs::path(".") : folder);
}

Mesh read_mesh(FILE* stream, const std::string& name, std::optional<MeshFormat> format,
               const Context& context) {
    ByteInput input(stream, name, context);
    return read_mesh_from(input, format, {});
}

namespace {

std::string in_small(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    });
    return text;
}

Mesh read_mesh_from(ByteInput& input, std::optional<MeshFormat> format, const fs::path& folder) {
    if (input.at_end()) {
        throw input_error(input.name() + ": the file is empty, where a mesh is expected",
                          {.file = input.name()});
    }
    const auto read = [&] {
        switch (format ? *format : detected_format(input)) {
        case MeshFormat::stl:
        case MeshFormat::stl_text:
            return read_stl(input);
        case MeshFormat::ply:
        case MeshFormat::ply_text:
            return read_ply(input);
        case MeshFormat::off:
            return read_off(input);
        case MeshFormat::obj:
            return read_obj(input, folder);
        case MeshFormat::glb:
            return read_glb(input);
        }
        return Mesh();
    };
    Mesh mesh = read();
    if (mesh.face_count() == 0) {
        throw input_error(input.name() + ": a mesh without faces", {.file = input.name()});
    }
    return mesh;
}

MeshFormat detected_format(ByteInput& input) {
    constexpr std::size_t enough = 1024;
    const std::string_view start = input.peek(enough);
    if (const std::optional<MeshFormat> format = format_of_start(start)) {
        return *format;
    }
    // A binary STL begins with any text; an OBJ is one, often with comments first.
    const bool is_text = std::none_of(
        start.begin(), start.end(), [](unsigned char c) { return c < 0x20 && !is_white_space(c); });
    return is_text ? MeshFormat::obj : MeshFormat::stl;
}

// By what only a file of the format begins with.
std::optional<MeshFormat> format_of_start(std::string_view start) {
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    start.remove_prefix(start.starts_with(byte_order_mark) ? byte_order_mark.size() : 0);
    if (start.starts_with("glTF")) {
        return MeshFormat::glb;
    }
    const std::string_view word = start.substr(0, start.find_first_of(white_space));
    const bool is_whole_word = word.size() < start.size();
    if (is_whole_word && word == "ply") {
        return MeshFormat::ply;
    }
    if (is_whole_word && word.size() <= 9 && word.ends_with("OFF") &&
        word.find_first_not_of("STCN4nOF") == std::string_view::npos) {
        return MeshFormat::off;
    }
    if (is_whole_word && is_word(word, "solid")) {
        return MeshFormat::stl_text;
    }
    return {};
}

} // namespace
} // namespace korvel::kit
