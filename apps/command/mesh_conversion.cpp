#include "apps/command/mesh_conversion.h"

#include <utility>

#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/report.h"
#include "apps/command/task.h"

namespace korvel::command {

MeshConversion::MeshConversion(std::string input, std::string output, const std::string& from,
                               const std::string& to)
    : input_(std::move(input)), output_(std::move(output)) {
    from_ = kit::mesh_format_named(from);
    is_mesh_ = from.empty() && holds_mesh(input_);
    to_ = to.empty() && output_ != "-" ? kit::mesh_format(kit::path_of(output_))
                                       : kit::mesh_format_named(to);
    const std::string model = kit::kind_word(kit::FileKind::model);
    makes_model_ =
        to == model || (to.empty() && (kit::path_of(output_).extension() == "." + model ||
                                       (output_ == "-" && takes_mesh())));
}

bool MeshConversion::is_wanted() const {
    return takes_mesh() || makes_mesh() || makes_model_;
}

void MeshConversion::check() const {
    if (!makes_mesh() && !makes_model_) {
        throw kit::input_error(shown(input_) + ": a mesh, which is written as a mesh or a body "
                                               "model; 'korvel section' makes a map of it",
                               {.file = shown(input_)});
    }
    if (makes_mesh() && output_ == "-") {
        throw kit::input_error("a mesh is written into a file, a body model to standard output");
    }
    if (output_ == "-") {
        report_to_standard_error();
    } else if (makes_mesh()) {
        kit::MeshOutput::check(kit::path_of(output_), to_);
    } else {
        kit::OutputFile::check(kit::path_of(output_));
    }
}

void MeshConversion::run(const ModelReader& reader) const {
    facts().set("input", shown(input_));
    if (!takes_mesh()) {
        write(reader.read(input_, facts()));
        return;
    }
    const kit::Mesh mesh = [&] {
        Task task("reading " + shown(input_));
        return read_mesh(input_, from_, task.context());
    }();
    if (makes_model_ || reader.is_welding()) {
        write(reader.solids_of(input_, mesh, facts()));
    } else {
        print("%s", mesh_text(shown(input_), mesh).c_str());
        facts().set("mesh", mesh_record(mesh));
        write(mesh);
    }
}

void MeshConversion::write(const kit::Solids& solids) const {
    facts().set("model", model_record(solids));
    print("%s: %s", counted(solids.size(), "body", "bodies").c_str(),
          model_figures(solids).c_str());
    if (makes_mesh()) {
        write(kit::mesh_of(solids));
        return;
    }
    const Task task("writing " + output_);
    if (output_ == "-") {
        kit::OutputFile out(kit::standard_output);
        solids.write(out);
        out.replace();
    } else {
        solids.write(kit::path_of(output_));
    }
}

void MeshConversion::write(const kit::Mesh& mesh) const {
    warn_of_precision(mesh, output_, to_);
    const Task task("writing " + output_);
    kit::write_mesh(mesh, kit::path_of(output_), to_);
}

} // namespace korvel::command
