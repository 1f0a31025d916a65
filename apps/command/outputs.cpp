#include "apps/command/outputs.h"

#include <algorithm>
#include <filesystem>
#include <list>
#include <system_error>
#include <utility>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/model_input.h"
#include "apps/command/report.h"
#include "apps/command/task.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

kit::PictureFormat format_of(const std::string& picture);
std::string name_of(const std::string& file);
bool is_feature_file(const std::string& name);
bool is_mesh_file(const std::string& name);

} // namespace

Option Outputs::add_file(Options options, const std::string& contents, Formats formats) {
    formats_ = formats;
    return options.add("-o,--output", file_, "FILE", contents);
}

void Outputs::add_model(Options options) {
    add_file(options, "Write the model: a body model file, .stl, .ply, .obj, .off or .glb",
             Formats::meshes)
        .required();
}

void Outputs::add_picture(Options options) {
    options.add("--picture", picture_, "FILE", "Paint a picture: .png, .svg or .pdf");
    size_option_ = options
                       .add("--size", size_, "WxH",
                            "Size of the picture in pixels (.pdf: points), 16 to 20000 each")
                       .with_default();
}

void Outputs::add_leftover(Options options) {
    options.add("--leftover", leftover_, "FILE",
                "Write the lines that are on no border: a curve file, .geojson, …");
}

void Outputs::check() const {
    parse_picture_size("--size", size_);
    if (picture_.empty() && size_option_.is_given()) {
        throw kit::input_error("--size is of no use without --picture");
    }
    if (!picture_.empty()) {
        format_of(picture_);
    }
    check_names();
    for (const Name& name : named()) {
        if (name.file == "-") {
            report_to_standard_error();
        } else if (name.formats == Formats::features && is_feature_file(name.file)) {
            kit::FeatureOutput::check(kit::path_of(name.file));
        } else if (name.formats == Formats::meshes && is_mesh_file(name.file)) {
            kit::MeshOutput::check(kit::path_of(name.file));
        } else {
            kit::OutputFile::check(kit::path_of(name.file));
        }
    }
}

void Outputs::check_names() const {
    const auto place = [](const std::string& file) {
        std::error_code error;
        return std::filesystem::weakly_canonical(std::filesystem::absolute(kit::path_of(file)),
                                                 error);
    };
    const std::vector<Name> files = named();
    for (auto one = files.begin(); one != files.end(); ++one) {
        for (auto other = files.begin(); other != one; ++other) {
            if (place(one->file) == place(other->file)) {
                throw kit::input_error(other->file + ": named both " + one->purpose + " and " +
                                       other->purpose);
            }
        }
    }
}

// The requested files, and by what.
std::vector<Outputs::Name> Outputs::named() const {
    std::vector<Name> files = {{file_, "by --output", formats_},
                               {leftover_, "by --leftover", Formats::features},
                               {picture_, "for the picture"}};
    std::erase_if(files, [](const Name& name) { return name.file.empty(); });
    return files;
}

void Outputs::write(const Content& file, const Paint& paint, const Content& leftover) const {
    const std::vector<std::pair<std::string, Content>> jobs = {
        {file_, file}, {leftover_, leftover}, {picture_, [&](kit::OutputFile& out) {
                                                   paint_into(out, picture_, paint);
                                               }}};
    std::list<kit::OutputFile> written;
    std::list<kit::FeatureOutput> features;
    std::list<kit::MeshOutput> meshes;
    std::string names;
    for (const auto& [name, content] : jobs) {
        if (name.empty()) {
            continue;
        }
        const Task task("writing " + name);
        names.append(names.empty() ? "" : ", ").append(name_of(name));
        if (content.features && is_feature_file(name)) {
            features.emplace_back(content.features(), kit::path_of(name));
        } else if (content.mesh && is_mesh_file(name)) {
            meshes.emplace_back(content.mesh(), kit::path_of(name));
        } else {
            content.write(name == "-" ? written.emplace_back(kit::standard_output)
                                      : written.emplace_back(kit::path_of(name)));
            written.back().close();
        }
        note_output(name_of(name));
    }
    for (kit::OutputFile& output : written) {
        output.replace();
    }
    for (kit::FeatureOutput& output : features) {
        output.replace();
    }
    for (kit::MeshOutput& output : meshes) {
        output.replace();
    }
    if (!names.empty()) {
        print("wrote %s", names.c_str());
    }
}

void Outputs::write_model(const kit::Solids& solids) const {
    Content content = [&](kit::OutputFile& out) { solids.write(out); };
    content.mesh = [&] {
        kit::Mesh mesh = kit::mesh_of(solids);
        warn_of_precision(mesh, file_, kit::mesh_format(kit::path_of(file_)));
        return mesh;
    };
    write(content);
}

void Outputs::write_picture(const std::string& file, const Paint& paint) const {
    kit::OutputFile picture(kit::path_of(file));
    paint_into(picture, file, paint);
    picture.close();
    picture.replace();
}

void Outputs::paint_into(kit::OutputFile& out, const std::string& file, const Paint& paint) const {
    const kit::PictureSize size = parse_picture_size("--size", size_);
    kit::PictureCanvas canvas(out, format_of(file), size, kit::PictureFit::units_per_pixel);
    paint(canvas);
    canvas.finish();
}

namespace {

kit::PictureFormat format_of(const std::string& picture) {
    return picture == "-" ? kit::PictureFormat::png : kit::picture_format(kit::path_of(picture));
}

std::string name_of(const std::string& file) {
    return file == "-" ? "standard output" : file;
}

bool is_feature_file(const std::string& name) {
    return !kit::feature_format(kit::path_of(name)).empty();
}

bool is_mesh_file(const std::string& name) {
    return kit::mesh_format(kit::path_of(name)).has_value();
}

} // namespace
} // namespace korvel::command
