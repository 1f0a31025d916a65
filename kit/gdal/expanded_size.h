#pragma once

#include <cstdint>
#include <filesystem>

namespace korvel::kit {

/// Whether a file is a ZIP archive or compressed by gzip, whatever its name, and the files in it
/// come to more than a number of bytes. Reads gzip up to there, of an archive its directory alone.
bool expands_beyond(const std::filesystem::path& file, std::uint64_t bytes);

} // namespace korvel::kit
