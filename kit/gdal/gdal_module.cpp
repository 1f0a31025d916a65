// The module of GDAL: formats of maps besides the kit's own.

#include <algorithm>
#include <array>
#include <cstring>
#include <sstream>

#include "kit/base/error.h"
#include "kit/gdal/gdal_errors.h"
#include "kit/gdal/gdal_formats.h"

namespace korvel::kit {
namespace {

constexpr std::array left_out = {
    // networks and services
    "AmigoCloud", "Carto", "CSW", "EEDA", "Elasticsearch", "GMLAS", "HTTP", "NGW", "OAPIF",
    "OGCAPI", "PLSCENES", "WFS",
    // databases
    "MSSQLSpatial", "MongoDBv3", "MySQL", "OCI", "ODBC", "PGDUMP", "PGeo", "PostgreSQL",
    // what names other files, or starts programs
    "GPSBabel", "OGR_OGDI", "OGR_VRT",
    // no files of shapes
    "Memory", "ODS", "XLS", "XLSX"};

bool has(GDALDriver& driver, const char* capability) {
    return CPLTestBool(CSLFetchNameValueDef(driver.GetMetadata(), capability, "NO"));
}

bool is_taken(GDALDriver& driver) {
    const std::string name = driver.GetDescription();
    const bool is_picture = has(driver, GDAL_DCAP_RASTER) && name != "GPKG" && name != "CAD";
    return has(driver, GDAL_DCAP_VECTOR) && !is_picture &&
           std::find(left_out.begin(), left_out.end(), name) == left_out.end();
}

std::string text_of(GDALDriver& driver, const char* item) {
    const char* text = driver.GetMetadataItem(item);
    return text != nullptr ? text : "";
}

FeatureFormat format_of(GDALDriver& driver) {
    FeatureFormat format{.name = driver.GetDescription(),
                         .title = text_of(driver, GDAL_DMD_LONGNAME),
                         .suffixes = {},
                         .can_write = can_create(driver)};
    std::istringstream suffixes(text_of(driver, GDAL_DMD_EXTENSIONS));
    for (std::string suffix; suffixes >> suffix;) {
        format.suffixes.push_back("." + suffix);
    }
    return format;
}

class Gdal : public ForeignFormats {
public:
    std::vector<FeatureFormat> formats() const override {
        std::vector<FeatureFormat> formats;
        for (GDALDriver* driver : gdal_drivers()) {
            formats.push_back(format_of(*driver));
        }
        std::sort(formats.begin(), formats.end(),
                  [](const auto& a, const auto& b) { return a.name < b.name; });
        return formats;
    }

    Features read(const std::filesystem::path& file, const ReadFeaturesOptions& options,
                  const Context& context) const override {
        return read_by_gdal(file, options, context);
    }

    void write(const Features& features, const std::filesystem::path& file,
               const std::string& format, int decimals) const override {
        for (GDALDriver* driver : gdal_drivers()) {
            if (format == driver->GetDescription() && can_create(*driver)) {
                write_by_gdal(features, file, *driver, decimals);
                return;
            }
        }
        throw input_error("GDAL does not write the format " + format, {.value = format});
    }
};

} // namespace

const std::vector<GDALDriver*>& gdal_drivers() {
    static const std::vector<GDALDriver*> drivers = [] {
        const GdalErrors errors; // of plugins that are not complete
        GDALAllRegister();
        std::vector<GDALDriver*> taken;
        GDALDriverManager& all = *GetGDALDriverManager();
        for (int i = 0; i < all.GetDriverCount(); ++i) {
            if (is_taken(*all.GetDriver(i))) {
                taken.push_back(all.GetDriver(i));
            }
        }
        return taken;
    }();
    return drivers;
}

bool can_create(GDALDriver& driver) {
    return has(driver, GDAL_DCAP_CREATE) && has(driver, GDAL_DCAP_CREATE_LAYER);
}

} // namespace korvel::kit

extern "C" __attribute__((visibility("default"))) const void* korvel_module(const char* version) {
    using namespace korvel::kit;
    static const Gdal gdal;
    const ForeignFormats* interface = &gdal;
    return std::strcmp(version, KORVEL_VERSION) == 0 ? interface : nullptr;
}
