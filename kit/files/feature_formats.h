#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "kit/files/feature_files.h"
#include "kit/files/foreign_formats.h"

namespace korvel::kit {

/// The one that the kit itself has.
constexpr const char* geojson_format = "GeoJSON";

/// The formats that files are recognized as by their suffixes, GeoJSON first, without GDAL.
const std::vector<FeatureFormat>& formats_with_suffixes();

/// Whether a name, in small or capital letters, is that of a format; the empty one is of every one.
bool is_format(const std::string& name, const std::string& format);

/// "GeoPackage" for "GPKG"; a name that is not known is its title.
std::string format_title(const std::string& name);

/// GDAL's formats; throws an `Error` with what is missing: "FILE: GeoPackage is read with GDAL,
/// which …". `use` is "read" or "written".
const ForeignFormats& need_foreign_formats(const std::filesystem::path& file,
                                           const std::string& format, const char* use);

/// The format of a file to be written: that of the options by its exact name, or that which the
/// suffix selects. Throws an `Error` if there is none.
std::string format_to_write(const std::filesystem::path& file, const std::string& format);

} // namespace korvel::kit
