// Outputs of features: complete or absent, also those of several files.

#include <algorithm>
#include <array>
#include <list>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "kit/base/error.h"
#include "kit/base/interruption.h"
#include "kit/base/system_files.h"
#include "kit/files/feature_files.h"
#include "kit/files/feature_formats.h"

namespace korvel::kit {
namespace fs = std::filesystem;
namespace {

constexpr const char* shapefile = "ESRI Shapefile";

// The files of a shapefile that are written, and those that other programs add and that describe
// the former contents.
constexpr std::array<const char*, 5> shapefile_suffixes = {".shx", ".dbf", ".prj", ".cpg", ".shp"};
constexpr std::array<const char*, 9> index_suffixes = {".sbn", ".sbx", ".qix", ".idm",    ".ind",
                                                       ".ain", ".aih", ".qpj", ".shp.xml"};

} // namespace

/// Files that GDAL writes into a folder beside the target, under their own names, because a format
/// may keep the name of the file in its contents.
class FolderBeside {
public:
    FolderBeside(const fs::path& target, std::string format);
    ~FolderBeside();
    FolderBeside(const FolderBeside&) = delete;
    FolderBeside& operator=(const FolderBeside&) = delete;

    void write(const Features& features, const ForeignFormats& formats, int decimals) const;
    void replace() const;

private:
    std::vector<fs::path> written() const;
    fs::path beside_target(const char* suffix) const;

    fs::path name_;   // as the user spelled it
    fs::path target_; // links resolved
    std::string format_;
    fs::path folder_;
    std::list<RemoveOnSignal> held_;
};

class FeatureOutput::Files {
public:
    std::optional<OutputFile> file;
    std::optional<FolderBeside> folder;
};

void write_features(const Features& features, const fs::path& file,
                    const WriteFeaturesOptions& options) {
    FeatureOutput(features, file, options).replace();
}

void FeatureOutput::check(const fs::path& target, const WriteFeaturesOptions& options) {
    const std::string format = format_to_write(target, options.format);
    OutputFile::check(target);
    const auto fail = [&](const std::string& reason) {
        throw input_error(text_of(target) + ": " + reason, {.file = text_of(target)});
    };
    if (format != geojson_format && is_device(target)) {
        fail(format_title(format) + " is written into a regular file only");
    }
    if (format == shapefile && feature_format(target) != shapefile) {
        fail("the name of a shapefile ends in .shp");
    }
}

FeatureOutput::FeatureOutput(const Features& features, const fs::path& target,
                             const WriteFeaturesOptions& options)
    : files_(std::make_unique<Files>()) {
    check(target, options);
    const std::string format = format_to_write(target, options.format);
    // Elsewhere triangles that meet along sides are no valid polygons of one feature.
    const bool is_divided = features.is_tin && format != "GPKG";
    const Features apart = is_divided ? triangles_apart(features) : Features();
    const Features& written = is_divided ? apart : features;
    if (format == geojson_format) {
        files_->file.emplace(target);
        write_geojson(written, *files_->file, options.decimals);
        files_->file->close();
    } else {
        files_->folder.emplace(target, format);
        files_->folder->write(written, need_foreign_formats(target, format, "written"),
                              options.decimals);
    }
}

FeatureOutput::~FeatureOutput() = default;

void FeatureOutput::replace() {
    if (files_->file) {
        files_->file->replace();
    } else {
        files_->folder->replace();
    }
}

FolderBeside::FolderBeside(const fs::path& target, std::string format)
    : name_(target), target_(target), format_(std::move(format)) {
    std::error_code error;
    if (fs::exists(target_, error)) {
        target_ = fs::canonical(target_, error);
    }
    folder_ = target_.parent_path() / temporary_name();
    const fs::path written = folder_ / target_.filename();
    held_.emplace_back(folder_);
    if (format_ == shapefile) {
        for (const char* const suffix : shapefile_suffixes) {
            held_.emplace_back(fs::path(written).replace_extension(suffix));
        }
    } else {
        held_.emplace_back(written);
        held_.emplace_back(fs::path(written) += "-journal"); // of a GeoPackage
    }
    if (!fs::create_directory(folder_, error) || error) {
        throw output_error(text_of(name_) + ": cannot be written: " + error.message(),
                           {.file = text_of(name_)});
    }
}

FolderBeside::~FolderBeside() {
    std::error_code error;
    fs::remove_all(folder_, error);
}

void FolderBeside::write(const Features& features, const ForeignFormats& formats,
                         int decimals) const {
    try {
        formats.write(features, folder_ / target_.filename(), format_, decimals);
    } catch (const Error& error) {
        throw Error(error.kind(), text_of(name_) + ": " + error.what(),
                    {.file = text_of(name_), .value = error.value(), .advice = error.advice()});
    }
}

// The target comes last, so that it is new only if its side files are.
void FolderBeside::replace() const {
    const std::vector<fs::path> files = written();
    for (const fs::path& file : files) {
        OutputFile::check(target_.parent_path() / file.filename());
    }
    if (format_ == shapefile) {
        std::error_code error;
        for (const char* const suffix : index_suffixes) {
            fs::remove(beside_target(suffix), error);
        }
        for (const char* const suffix : shapefile_suffixes) {
            if (!fs::exists(folder_ / beside_target(suffix).filename())) {
                fs::remove(beside_target(suffix), error);
            }
        }
    }
    for (const fs::path& file : files) {
        OutputFile(target_.parent_path() / file.filename()).replace_by(file);
    }
}

// The file of the target's name is the last one.
std::vector<fs::path> FolderBeside::written() const {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
        files.push_back(entry.path());
    }
    std::partition(files.begin(), files.end(),
                   [&](const fs::path& file) { return file.filename() != target_.filename(); });
    if (files.empty() || !fs::is_regular_file(files.back()) ||
        files.back().filename() != target_.filename()) {
        throw output_error(text_of(name_) + ": " + format_title(format_) +
                               " is not written as a file of this name",
                           {.file = text_of(name_)});
    }
    return files;
}

fs::path FolderBeside::beside_target(const char* suffix) const {
    return fs::path(target_).replace_extension(suffix);
}

} // namespace korvel::kit
