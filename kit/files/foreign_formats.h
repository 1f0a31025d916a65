#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "kit/base/context.h"
#include "kit/files/feature_files.h"
#include "kit/files/features.h"

namespace korvel::kit {

/// Formats of features that another library reads and writes.
class ForeignFormats {
public:
    ForeignFormats() = default;
    virtual ~ForeignFormats() = default;
    ForeignFormats(const ForeignFormats&) = delete;
    ForeignFormats& operator=(const ForeignFormats&) = delete;

    /// All that the library has, by their names; GeoJSON is among them, for conditions on
    /// attributes.
    virtual std::vector<FeatureFormat> formats() const = 0;

    /// Reads a layer. The format is detected by the library where `options` name none. Throws an
    /// input error that begins with the file's name.
    virtual Features read(const std::filesystem::path& file, const ReadFeaturesOptions& options,
                          const Context& context) const = 0;

    /// Writes a layer into a file that does not exist yet, and its side files beside it, in the
    /// format of that short name. The caller puts the files in place of their targets. Throws an
    /// output error when the system refuses, an input error when the format cannot hold the
    /// features; both without the name of a file in front.
    virtual void write(const Features& features, const std::filesystem::path& file,
                       const std::string& format, int decimals) const = 0;
};

/// GDAL's formats, or what is missing.
struct ForeignLibrary {
    const ForeignFormats* formats = nullptr;

    /// Without formats: how a message goes on after "read with GDAL, ", as in "which this build of
    /// korvel does not have (KORVEL_WITH_GDAL)".
    std::string missing;
};

/// Loads the module at the first call.
const ForeignLibrary& foreign_library();

} // namespace korvel::kit
