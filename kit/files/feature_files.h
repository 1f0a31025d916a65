#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "kit/base/context.h"
#include "kit/files/features.h"
#include "kit/files/geojson_writer.h"
#include "kit/files/output_file.h"

// Files of features. GeoJSON is read and written by the kit itself, all others by GDAL, if the kit
// was built with it and its module is installed.

namespace korvel::kit {

/// A format of files of features.
struct FeatureFormat {
    std::string name;                  ///< "GeoJSON", "GPKG", …: the short name that GDAL uses
    std::string title;                 ///< "GeoPackage", …
    std::vector<std::string> suffixes; ///< ".gpkg", …
    bool can_write = false;
    bool is_built_in = false;
};

/// The formats that this build reads and writes, GeoJSON first, the others by their names. Loads
/// GDAL.
std::vector<FeatureFormat> feature_formats();

/// The name of the format that a file's suffix selects, in small or capital letters: "GeoJSON",
/// "ESRI Shapefile", "GPKG", "FlatGeobuf", "KML", "DXF", "TopoJSON", …; empty for any other suffix.
/// Does not load GDAL.
std::string feature_format(const std::filesystem::path& file);

/// What of a file is read.
struct ReadFeaturesOptions {
    std::string format =
        {}; ///< by its short name; detected from the suffix and the contents if empty
    std::string layer = {}; ///< by its name; the first one if empty
    std::string where = {}; ///< a condition on attributes as GDAL takes it; needs GDAL
    std::uint64_t memory =
        0; ///< the most bytes that what GDAL reads may take; 0: half of those available
};

/// Whether a file is one of features: by its suffix, or because its first character that is no
/// white space is a brace, as in GeoJSON.
bool holds_features(const std::filesystem::path& file);

/// Reads the features of a file. Throws an `Error` that names the file, and place and value of the
/// first thing that does not fit, or what is missing when this build cannot read the format.
Features read_features(const std::filesystem::path& file, const ReadFeaturesOptions& options = {},
                       const Context& context = {});

/// The same for GeoJSON from an open stream; `name` is that in messages.
Features read_geojson_features(FILE* stream, const std::string& name,
                               const ReadFeaturesOptions& options = {},
                               const Context& context = {});

/// How coordinates are written.
struct WriteFeaturesOptions {
    std::string format = {}; ///< by its short name; selected by the suffix if empty
    int decimals = -1; ///< the most digits after the point; −1: as many as read back the same
};

/// Writes a layer into one file, or the several of a shapefile, which replace their targets when
/// they are complete. Throws an `Error` where the format cannot be written. The side files that a
/// former shapefile of the name has, and the new one has not, are removed.
void write_features(const Features& features, const std::filesystem::path& file,
                    const WriteFeaturesOptions& options = {});

/// Files that are written beside their targets and put in place by `replace`; without it they go
/// away.
class FeatureOutput {
public:
    /// Throws when the target cannot be written in the format, as far as that shows beforehand.
    static void check(const std::filesystem::path& target,
                      const WriteFeaturesOptions& options = {});

    FeatureOutput(const Features& features, const std::filesystem::path& target,
                  const WriteFeaturesOptions& options = {});
    ~FeatureOutput();
    FeatureOutput(const FeatureOutput&) = delete;
    FeatureOutput& operator=(const FeatureOutput&) = delete;

    void replace();

private:
    class Files;
    std::unique_ptr<Files> files_;
};

} // namespace korvel::kit
