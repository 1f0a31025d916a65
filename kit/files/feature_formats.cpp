#include "kit/files/feature_formats.h"

#include <algorithm>
#include <cctype>

#include "kit/base/error.h"
#include "kit/base/system_files.h"

namespace korvel::kit {
namespace {

std::string in_small_letters(std::string text);
std::string exact_name(const std::string& format);

} // namespace

const std::vector<FeatureFormat>& formats_with_suffixes() {
    static const std::vector<FeatureFormat> formats = {
        {geojson_format, "GeoJSON", {".geojson", ".json"}, true, true},
        {"GeoJSONSeq", "GeoJSON in lines", {".geojsonl", ".geojsons"}},
        {"ESRI Shapefile", "Shapefile", {".shp"}},
        {"GPKG", "GeoPackage", {".gpkg"}},
        {"FlatGeobuf", "FlatGeobuf", {".fgb"}},
        {"KML", "KML", {".kml"}},
        {"LIBKML", "KML, compressed", {".kmz"}},
        {"DXF", "DXF", {".dxf"}},
        {"TopoJSON", "TopoJSON", {".topojson"}},
        {"GML", "GML", {".gml"}},
        {"GPX", "GPX", {".gpx"}},
        {"MapInfo File", "MapInfo", {".tab", ".mif"}},
        {"SQLite", "SQLite", {".sqlite"}},
        {"OpenFileGDB", "File geodatabase", {".gdb"}},
        {"DGN", "DGN", {".dgn"}},
        {"OSM", "OpenStreetMap", {".osm", ".pbf"}},
    };
    return formats;
}

std::vector<FeatureFormat> feature_formats() {
    std::vector<FeatureFormat> formats = {formats_with_suffixes().front()};
    if (const ForeignFormats* const foreign = foreign_library().formats; foreign != nullptr) {
        for (FeatureFormat& format : foreign->formats()) {
            if (format.name != geojson_format) {
                formats.push_back(std::move(format));
            }
        }
    }
    return formats;
}

std::string feature_format(const std::filesystem::path& file) {
    const std::string suffix = in_small_letters(text_of(file.extension()));
    for (const FeatureFormat& format : formats_with_suffixes()) {
        if (std::find(format.suffixes.begin(), format.suffixes.end(), suffix) !=
            format.suffixes.end()) {
            return format.name;
        }
    }
    return {};
}

bool is_format(const std::string& name, const std::string& format) {
    return name.empty() || in_small_letters(name) == in_small_letters(format);
}

std::string format_title(const std::string& name) {
    for (const FeatureFormat& format : formats_with_suffixes()) {
        if (format.name == name) {
            return format.title;
        }
    }
    return name;
}

const ForeignFormats& need_foreign_formats(const std::filesystem::path& file,
                                           const std::string& format, const char* use) {
    const ForeignLibrary& library = foreign_library();
    if (library.formats == nullptr) {
        const std::string name = text_of(file);
        const std::string what =
            format.empty() ? "a file of this kind" : format_title(exact_name(format));
        throw input_error(name + ": " + what + " is " + use + " with GDAL, " + library.missing,
                          {.file = name, .value = format});
    }
    return *library.formats;
}

std::string format_to_write(const std::filesystem::path& file, const std::string& format) {
    std::string name = format.empty() ? feature_format(file) : exact_name(format);
    if (name == geojson_format) {
        return name;
    }
    if (name.empty()) {
        const std::string text = text_of(file);
        throw input_error(text + ": no format of features has the suffix '" +
                              text_of(file.extension()) + "'",
                          {.file = text, .advice = "'korvel formats' lists the formats."});
    }
    const std::vector<FeatureFormat> formats =
        need_foreign_formats(file, name, "written").formats();
    const auto known = std::find_if(formats.begin(), formats.end(), [&](const FeatureFormat& any) {
        return is_format(name, any.name);
    });
    if (known == formats.end() || !known->can_write) {
        throw input_error(text_of(file) + ": " +
                              (known == formats.end() ? "'" + name + "' is no format of features"
                                                      : name + " is read only"),
                          {.file = text_of(file), .value = name});
    }
    return known->name;
}

namespace {

std::string in_small_letters(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// Names of formats are given in small or capital letters.
std::string exact_name(const std::string& format) {
    for (const FeatureFormat& any : formats_with_suffixes()) {
        if (!format.empty() && is_format(format, any.name)) {
            return any.name;
        }
    }
    return format;
}

} // namespace
} // namespace korvel::kit
