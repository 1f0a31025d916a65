#pragma once

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

/// Reads a body model file, or standard input for the name `-`.
kit::Solids read_solids(const std::string& name);

/// The same, as the only input: its name is noted.
kit::Solids load_solids(const std::string& name);

} // namespace korvel::command
