#pragma once

#include <optional>
#include <string>

#include "apps/command/options.h"
#include "apps/command/record.h"
#include "kit/kit.h"

// Body models as input of commands, and their figures in reports.

namespace korvel::command {

/// How a body model is read: from a body model file, or from a file of a mesh with `--weld`.
class ModelReader {
public:
    void add_option(Options options);

    /// Throws an input error when `--weld` does not fit, or is given although the file is no mesh.
    void check(bool is_mesh) const;

    /// Reads a file, or standard input for the name `-`. What a mesh was is set as "mesh" in the
    /// record, and printed if that `is_printed`.
    kit::Solids read(const std::string& name, Record& record, bool is_printed = true) const;

    /// Whether `--weld` is given.
    bool is_welding() const { return weld_.is_given(); }

    const kit::MeshSolidsOptions& options() const { return options_; }

    /// Makes solids of a mesh that was read.
    kit::Solids solids_of(const std::string& name, const kit::Mesh& mesh, Record& record,
                          bool is_printed = true) const;

private:
    kit::MeshSolidsOptions options_;
    Option weld_;
};

/// A body model as the only input of a command.
class ModelInput {
public:
    /// Adds the operand MODEL and `--weld`.
    void add_options(Options options);

    const std::string& file() const { return file_; }

    /// Reads the model and notes the name of its file.
    kit::Solids load() const;

private:
    std::string file_;
    ModelReader reader_;
};

/// Throws an input error unless the number is one of `size` things of the file: "--body: '7' is
/// not a body of states.model, they go from 0 to 3".
void check_number(const std::string& option, int number, int size, const std::string& thing,
                  const std::string& file);

/// "28280 vertices, 83016 edges, 55344 faces, volume 1075590865500", the volume of all bodies.
std::string model_figures(const kit::Solids& solids);

/// The same figures, and the number of bodies and the bounds, added to a record.
Record model_record(const kit::Solids& solids, Record record = {});

/// "x 0 to 10, y -5 to 5, z 1 to 2".
std::string bounds_text(const kit::Solids& solids);

/// Prints how many bodies a model has and its bounds, and notes both as `model`.
void report_bodies(const std::string& name, const kit::Solids& solids);

/// Warns when a model file would put vertices off by more than 10⁻⁵ of the model's extent. `advice`
/// ends the warning, such as "; --unit brings it closer to 0,0".
void warn_of_rounding(const kit::Solids& solids, const std::string& advice = {});

/// Warns when the single precision of a format would put points off by more than 10⁻⁵ of the mesh's
/// extent.
void warn_of_precision(const kit::Mesh& mesh, const std::string& file,
                       std::optional<kit::MeshFormat> format);

/// Throws an input error when a model file would take the area from a face.
void refuse_collapse(const kit::Solids& solids, const std::string& subject,
                     const std::string& advice);

using kit::colour_text;

/// "welded: 16588 vertices joined, 13012 faces shared, 0 walls split, 120 walls turned".
std::string weld_text(const kit::WeldReport& report);
Record weld_record(const kit::WeldReport& report);

/// "part.stl: mesh of 12 faces and 8 points".
std::string mesh_text(const std::string& file, const kit::Mesh& mesh);
Record mesh_record(const kit::Mesh& mesh);

/// "3 points joined, 2 faces divided, 12 faces turned, 0 open edges, 0 edges with more than two
/// faces".
std::string mesh_text(const kit::MeshReport& report);
Record mesh_record(const kit::MeshReport& report, Record record);

} // namespace korvel::command
