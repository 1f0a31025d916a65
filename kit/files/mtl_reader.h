#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "kit/base/colour.h"
#include "kit/base/context.h"

namespace korvel::kit {

/// The colours of the materials that a file of an OBJ describes, by their names. Those that state
/// no diffuse colour in red, green and blue have none.
using Materials = std::map<std::string, std::optional<Colour>, std::less<>>;

/// Adds the materials of the library that an OBJ names, in its folder. Warns, with the name of the
/// OBJ, if there is no such file.
void read_materials(const std::string& library, const std::filesystem::path& folder,
                    const std::string& obj, const Context& context, Materials& materials);

/// A share of a colour from 0 to 1; larger ones are those from 0 to 255 that some programs write.
unsigned char colour_channel(double share);

} // namespace korvel::kit
