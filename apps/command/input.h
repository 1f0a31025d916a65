#pragma once

#include <optional>
#include <string>

#include "kit/kit.h"

namespace korvel::command {

/// A file's name in messages: "standard input" for `-`.
std::string shown(const std::string& input);

/// Reads a file, or standard input for the name `-`, which can be read once only. Throws an input
/// error when it cannot be read.
kit::TextFile read_input(const std::string& name);

/// Whether an input is a file of features (`kit::holds_features`). For the name `-` standard input
/// is read up to its first character.
bool holds_features(const std::string& name);

/// Reads a file of features, or GeoJSON from standard input for the name `-`.
kit::Features read_features(const std::string& name, const kit::ReadFeaturesOptions& options,
                            const kit::Context& context = {});

/// Reads a polygon-region file, whose name is noted.
kit::Map load_regions(const kit::TextFile& file);

/// Whether an input is a file of a mesh (`kit::holds_mesh`). Standard input is one if it begins
/// with a letter, or with a comment where it can only be a model.
bool holds_mesh(const std::string& name, bool is_model = false);

/// Reads a mesh, or standard input for the name `-`. An empty format is that of the file.
kit::Mesh read_mesh(const std::string& name, std::optional<kit::MeshFormat> format = {},
                    const kit::Context& context = {});

} // namespace korvel::command
