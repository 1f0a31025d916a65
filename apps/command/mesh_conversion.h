#pragma once

#include <optional>
#include <string>

#include "apps/command/model_input.h"
#include "kit/kit.h"

namespace korvel::command {

/// The conversion of a mesh or a body model into a file of a mesh or a body model: the one of
/// `convert` that is not about features.
class MeshConversion {
public:
    /// `from` and `to` are the names of formats, empty for those of the files.
    MeshConversion(std::string input, std::string output, const std::string& from,
                   const std::string& to);

    /// Whether one of the two files is a mesh, or OUT is a body model.
    bool is_wanted() const;

    /// Throws when OUT cannot be written, as far as that shows beforehand.
    void check() const;

    /// From mesh to mesh faces stay as they are unless `reader` welds; else bodies are made.
    void run(const ModelReader& reader) const;

private:
    bool takes_mesh() const { return from_ || is_mesh_; }
    bool makes_mesh() const { return to_.has_value(); }
    void write(const kit::Solids& solids) const;
    void write(const kit::Mesh& mesh) const;

    std::string input_;
    std::string output_;
    std::optional<kit::MeshFormat> from_;
    std::optional<kit::MeshFormat> to_;
    bool is_mesh_ = false;     // IN, by its contents
    bool makes_model_ = false; // OUT
};

} // namespace korvel::command
