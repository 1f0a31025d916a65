#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <gdal_priv.h>

#include "kit/files/foreign_formats.h"

namespace korvel::kit {

/// GDAL's drivers of vector formats in files. Those that reach into the network, into databases,
/// into other files or programs that a file names are left out, and those of pictures and tables.
const std::vector<GDALDriver*>& gdal_drivers();

/// Whether a driver makes files of features.
bool can_create(GDALDriver& driver);

Features read_by_gdal(const std::filesystem::path& file, const ReadFeaturesOptions& options,
                      const Context& context);

void write_by_gdal(const Features& features, const std::filesystem::path& file, GDALDriver& driver,
                   int decimals);

} // namespace korvel::kit
