#include <cmath>
#include <memory>
#include <utility>

#include <cpl_conv.h>
#include <cpl_string.h>
#include <ogrsf_frmts.h>

#include "kit/base/available_memory.h"
#include "kit/base/error.h"
#include "kit/base/number_text.h"
#include "kit/gdal/expanded_size.h"
#include "kit/gdal/gdal_errors.h"
#include "kit/gdal/gdal_features.h"
#include "kit/gdal/gdal_formats.h"

namespace korvel::kit {
namespace {

// Options of GDAL in this thread while it exists.
class LocalOptions {
public:
    LocalOptions() {
        for (const auto& [name, value] : options) {
            CPLSetThreadLocalConfigOption(name, value);
        }
    }
    ~LocalOptions() {
        for (const auto& [name, value] : options) {
            CPLSetThreadLocalConfigOption(name, nullptr);
        }
    }
    LocalOptions(const LocalOptions&) = delete;
    LocalOptions& operator=(const LocalOptions&) = delete;

private:
    static constexpr std::pair<const char*, const char*> options[] = {
        {"GML_DOWNLOAD_SCHEMA", "NO"},
        {"CPL_VSIL_CURL_ALLOWED_EXTENSIONS", "{noext}"}, // of addresses inside files
        {"OGR_GEOJSON_MAX_OBJ_SIZE", "0"},               // no limit of one feature
    };
};

struct Source {
    std::string name; // as the user has spelled it, for messages
    GdalErrors& errors;

    [[noreturn]] void fail(const std::string& what) const {
        throw input_error(name + ": " + what, {.file = name});
    }
};

using Dataset = std::unique_ptr<GDALDataset>;

Dataset open(const Source& source, const std::filesystem::path& file, const std::string& format,
             std::uint64_t memory);
OGRLayer& chosen_layer(const Source& source, GDALDataset& dataset, const std::string& name);
void set_condition(const Source& source, OGRLayer& layer, const std::string& where);
void read_features_of(const Source& source, OGRLayer& layer, GdalFeatures& builder,
                      const Context& context);

} // namespace

Features read_by_gdal(const std::filesystem::path& file, const ReadFeaturesOptions& options,
                      const Context& context) {
    GdalErrors errors;
    const LocalOptions local;
    const Source source{file.string(), errors};
    const std::uint64_t memory = options.memory > 0 ? options.memory : available_memory() / 2;

    const Dataset dataset = open(source, file, options.format, memory);
    OGRLayer& layer = chosen_layer(source, *dataset, options.layer);
    set_condition(source, layer, options.where);
    GdalFeatures builder(source.name, *dataset, layer, memory);
    errors.clear(); // of reference systems that GDAL does not know, which do not matter to features
    read_features_of(source, layer, builder, context);
    Features features = builder.take();
    for (OGRLayer* each : dataset->GetLayers()) {
        features.layers.emplace_back(each->GetName());
    }
    return features;
}

namespace {

// Names of drivers, and the file in an archive, as GDAL takes them.
CPLStringList drivers_for(const Source& source, const std::string& format);
std::string name_for_gdal(const std::filesystem::path& file);

Dataset open(const Source& source, const std::filesystem::path& file, const std::string& format,
             std::uint64_t memory) {
    std::error_code none;
    if (!std::filesystem::exists(file, none)) { // so that no name is one of a service
        source.fail("cannot be opened: there is no such file");
    }
    constexpr std::uint64_t copies = 8; // of a text that some readers of GDAL keep at once
    const std::uint64_t limit = memory / copies;
    if (expands_beyond(file, limit)) {
        source.fail("is compressed, and expands to more than " + std::to_string(limit) +
                    " bytes: unpack it first");
    }
    const CPLStringList drivers = drivers_for(source, format);
    Dataset dataset(GDALDataset::Open(name_for_gdal(file).c_str(),
                                      GDAL_OF_VECTOR | GDAL_OF_READONLY, drivers.List()));
    if (dataset == nullptr) {
        source.fail(source.errors.text(format.empty() ? "has no format that GDAL recognises"
                                                      : "is no file of " + format));
    }
    return dataset;
}

CPLStringList drivers_for(const Source& source, const std::string& format) {
    CPLStringList names;
    for (GDALDriver* driver : gdal_drivers()) {
        const std::string name = driver->GetDescription();
        if (format.empty() || name == format || (format == "KML" && name == "LIBKML")) {
            names.AddString(name.c_str());
        }
    }
    if (names.empty()) {
        source.fail("GDAL does not read the format " + format);
    }
    return names;
}

std::string name_for_gdal(const std::filesystem::path& file) {
    const std::string path = std::filesystem::absolute(file).string(); // never "PG:…"
    const std::string suffix = file.extension().string();
    return suffix == ".zip" ? "/vsizip/" + path : suffix == ".gz" ? "/vsigzip/" + path : path;
}

OGRLayer& chosen_layer(const Source& source, GDALDataset& dataset, const std::string& name) {
    std::string names;
    for (OGRLayer* layer : dataset.GetLayers()) {
        if (name.empty() || name == layer->GetName()) {
            return *layer;
        }
        names += (names.empty() ? "" : ", ") + std::string(layer->GetName());
    }
    if (names.empty()) {
        source.fail("contains no layer of features");
    }
    source.fail("has no layer \"" + name + "\"; it has: " + names);
}

void set_condition(const Source& source, OGRLayer& layer, const std::string& where) {
    source.errors.clear();
    if (where.empty()) {
        return;
    }
    const bool is_taken = layer.SetAttributeFilter(where.c_str()) == OGRERR_NONE;
    if (is_taken) { // by databases without a look at it
        const std::unique_ptr<OGRFeature> first(layer.GetNextFeature());
        layer.ResetReading();
    }
    if (!is_taken || source.errors.has_failed()) {
        source.fail("the condition \"" + where +
                    "\" cannot be used: " + source.errors.text("it has an error"));
    }
}

void read_features_of(const Source& source, OGRLayer& layer, GdalFeatures& builder,
                      const Context& context) {
    constexpr long long features_between_reports = 512;
    const char* const stage = "reading features";
    const long long all = layer.GetFeatureCount(FALSE); // less than 0 if it would have to count
    for (long long done = 0;; ++done) {
        if (done % features_between_reports == 0) {
            all > 0 ? context.report(stage, done, all) : context.stop_if_requested(stage);
        }
        const std::unique_ptr<OGRFeature> feature(layer.GetNextFeature());
        if (source.errors.has_failed()) {
            source.fail(source.errors.text("cannot be read"));
        }
        if (feature == nullptr) {
            return;
        }
        builder.add(*feature);
    }
}

} // namespace
} // namespace korvel::kit
