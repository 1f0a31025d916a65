#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/input.h"
#include "apps/command/mesh_conversion.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/report.h"
#include "apps/command/task.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class ConvertCommand {
public:
    explicit ConvertCommand(Options options);
    void run() const;

private:
    void convert_mesh(const MeshConversion& conversion) const;
    void convert_features() const;
    void check() const;
    void project(kit::Features& features) const;
    void report(const kit::Features& features) const;

    std::string input_;
    std::string output_;
    kit::ReadFeaturesOptions read_;
    kit::WriteFeaturesOptions write_;
    std::string project_ = "none";
    std::vector<Option> of_features_; ///< options that apply to features only
    ModelReader reader_;
};

kit::Features features_of_file(const std::string& input, const kit::ReadFeaturesOptions& options);
std::optional<kit::FileKind> own_kind(const std::string& output,
                                      const kit::WriteFeaturesOptions& options);
void write_as_file(const kit::Features& features, const std::string& output,
                   const kit::WriteFeaturesOptions& options);

void ConvertCommand::run() const {
    const MeshConversion conversion(input_, output_, read_.format, write_.format);
    if (conversion.is_wanted()) {
        convert_mesh(conversion);
    } else {
        convert_features();
    }
    const std::string name = output_ == "-" ? "standard output" : output_;
    note_output(name);
    print("wrote %s", name.c_str());
}

} // namespace

void add_convert_command(Program& program) {
    add_command<ConvertCommand>(program, "convert",
                                "Write a map or a mesh in another format, or a map in another "
                                "reference system");
}

namespace {

ConvertCommand::ConvertCommand(Options options) {
    options
        .add("IN", input_, "FILE",
             "GeoJSON, a format of GDAL, curves, regions, triangles or a section; or a mesh\n"
             "(.stl, .ply, .obj, .off, .glb) or a body model")
        .required();
    options
        .add("OUT", output_, "FILE",
             "The file to write; its suffix selects the format, or .curves, .regions or .model")
        .required();
    options.add("--from", read_.format, "FORMAT", "The format of IN, instead of the one it has");
    options.add("--to", write_.format, "FORMAT", "The format of OUT, whatever its suffix");
    of_features_ = {
        options.add("--layer", read_.layer, "NAME", "The layer of IN, instead of the first one"),
        options.add("--where", read_.where, "CONDITION",
                    "Only features with these attributes, as GDAL takes it: \"pop > 1000\""),
        options
            .add("--project", project_, "SYSTEM",
                 "The reference system of OUT: EPSG:25832, ..., or none: that of IN")
            .with_default(),
        options
            .add("--decimals", write_.decimals, "N",
                 "The most digits after the point of a coordinate; -1: all")
            .from_to(-1, 17, "-1 to 17")
            .with_default()};
    reader_.add_option(options);
    options.footer(
        "Heights of points, and styles, are left out. 'korvel formats' lists the formats. OUT is\n"
        "replaced once it is complete. The file name - is GeoJSON from standard input, or on\n"
        "standard output. From mesh to mesh the faces stay as they are, unless --weld is given.\n"
        "\n"
        "Examples:\n"
        "  korvel convert lands.geojson lands.gpkg\n"
        "  korvel convert lands.shp - --project EPSG:4326 --decimals 6 > lands.geojson\n"
        "  korvel convert part.stl part.model");
}

void ConvertCommand::convert_mesh(const MeshConversion& conversion) const {
    if (std::any_of(of_features_.begin(), of_features_.end(),
                    [](const Option& option) { return option.is_given(); })) {
        throw kit::input_error("--layer, --where, --project and --decimals are for features, not "
                               "for meshes");
    }
    conversion.check();
    conversion.run(reader_);
}

void ConvertCommand::convert_features() const {
    reader_.check(false);
    check();
    kit::Features features = features_of_file(input_, read_);
    project(features);
    report(features);
    write_as_file(features, output_, write_);
}

void ConvertCommand::check() const {
    if (output_ == "-") {
        report_to_standard_error();
    } else if (own_kind(output_, write_)) {
        kit::OutputFile::check(kit::path_of(output_));
    } else {
        kit::FeatureOutput::check(kit::path_of(output_), write_);
    }
}

void ConvertCommand::project(kit::Features& features) const {
    if (project_ == "none" || project_ == features.reference) {
        return;
    }
    if (features.reference.empty()) {
        throw kit::input_error(
            shown(input_) + ": no reference system is known, from which --project could convert");
    }
    const Task task("projecting");
    kit::projection(features.reference, project_)->forward(features.points);
    features.reference = project_;
}

void ConvertCommand::report(const kit::Features& features) const {
    const auto count = [](std::size_t number) { return static_cast<int>(number); };
    print("%s: %s, %s", shown(input_).c_str(),
          counted(count(features.features.size()), "feature").c_str(),
          counted(count(features.points.size()), "point").c_str());
    if (features.heights > 0) {
        print("%s of points left out", counted(count(features.heights), "height").c_str());
    }
    const std::string system = features.reference.empty() ? "not known" : features.reference;
    print("reference system: %s", system.c_str());
    facts()
        .set("features", count(features.features.size()))
        .set("points", count(features.points.size()))
        .set("heights", count(features.heights))
        .set("reference", features.reference);
}

// The features that a file has, or that are made of what it has.
kit::Features features_of_file(const std::string& input, const kit::ReadFeaturesOptions& options) {
    facts().set("input", shown(input));
    Task task("reading " + shown(input));
    const bool is_asked_for =
        !options.format.empty() || !options.layer.empty() || !options.where.empty();
    if (is_asked_for || holds_features(input)) {
        return read_features(input, options, task.context());
    }
    const kit::AnyFile file = kit::read_any(read_input(input), task.context());
    if (file.kind == kit::FileKind::model) {
        throw kit::input_error(shown(input) +
                                   ": a body model file, 'korvel section' makes a map of it",
                               {.file = shown(input)});
    }
    return kit::features_of(file);
}

// Which of korvel's own files OUT is to be.
std::optional<kit::FileKind> own_kind(const std::string& output,
                                      const kit::WriteFeaturesOptions& options) {
    for (const kit::FileKind kind : {kit::FileKind::curves, kit::FileKind::regions}) {
        const std::string word = kit::kind_word(kind);
        if (options.format.empty() ? kit::path_of(output).extension() == "." + word
                                   : options.format == word) {
            return kind;
        }
    }
    return {};
}

void write_as_file(const kit::Features& features, const std::string& output,
                   const kit::WriteFeaturesOptions& options) {
    Task task("writing " + output);
    if (output == "-") {
        kit::OutputFile out(kit::standard_output);
        kit::write_geojson(features, out, options.decimals);
        out.replace();
    } else if (const auto kind = own_kind(output, options)) {
        if (kind == kit::FileKind::curves) {
            kit::network_of(features).write(kit::path_of(output));
        } else {
            kit::regions_of(features, task.context()).write(kit::path_of(output));
        }
    } else {
        kit::write_features(features, kit::path_of(output), options);
    }
}

} // namespace
} // namespace korvel::command
