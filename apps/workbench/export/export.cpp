#include "apps/workbench/export/export.h"

#include <algorithm>
#include <cstdio>

#include <QBuffer>
#include <QCoreApplication>

namespace korvel::workbench {
namespace {

template <class Value, class Options>
void write_picture(const Value& value, const Options& options, const std::filesystem::path& file);
bool is_picture(const std::filesystem::path& file);
bool is_feature_file(const std::filesystem::path& file);
kit::Features with_levels(const FoundMap& found);
QString picture_formats();
QString feature_formats();
QString export_text(const char* text);

constexpr QLatin1String between(";;");

} // namespace

void export_regions(const FoundMap& found, const std::filesystem::path& file) {
    if (is_picture(file)) {
        write_picture(found.map, kit::MapPictureOptions(), file);
    } else if (is_feature_file(file)) {
        kit::write_features(with_levels(found), file);
    } else {
        found.map.write(file);
    }
}

void export_curves(const kit::Network& network, const std::filesystem::path& file) {
    if (is_feature_file(file)) {
        kit::write_features(kit::features_of(network), file);
    } else {
        network.write(file);
    }
}

void export_section(const kit::Section& section, const kit::SectionPictureOptions& options,
                    const std::filesystem::path& file) {
    if (is_picture(file)) {
        write_picture(section, options, file);
    } else if (is_feature_file(file)) {
        kit::write_features(kit::features_of(section), file);
    } else {
        section.write(file);
    }
}

void export_image(const QImage& image, const std::filesystem::path& file) {
    QByteArray png;
    QBuffer buffer(&png);
    if (!image.save(&buffer, "PNG")) {
        throw kit::output_error("there is no picture to write");
    }
    kit::OutputFile out(file);
    (void)std::fwrite(png.constData(), 1, static_cast<std::size_t>(png.size()), out.stream());
    out.replace();
}

QString region_formats() {
    return QStringList{feature_formats(), picture_formats(), export_text("Region file (*.regions)")}
        .join(between);
}

QString curve_formats() {
    return QStringList{export_text("Curve file (*.curves)"), feature_formats()}.join(between);
}

QString section_formats() {
    return QStringList{picture_formats(), feature_formats(),
                       export_text("Section file (*.section)")}
        .join(between);
}

QString solid_formats() {
    QStringList formats = {export_text("Model file (*.model)")};
    for (const kit::MeshFormatInfo& format : kit::mesh_formats()) {
        if (!format.suffix.empty()) {
            formats.append(QStringLiteral("%1 (*%2)")
                               .arg(QString::fromStdString(format.title),
                                    QString::fromStdString(format.suffix)));
        }
    }
    return formats.join(between);
}

namespace {

template <class Value, class Options>
void write_picture(const Value& value, const Options& options, const std::filesystem::path& file) {
#if defined(KORVEL_HAS_CAIRO)
    kit::write_picture(value, file, options);
#else
    (void)value;
    (void)options;
    throw kit::input_error(kit::text_of(file) + ": this korvel was built without pictures");
#endif
}

bool is_picture(const std::filesystem::path& file) {
    const QString name = QString::fromStdString(kit::text_of(file)).toLower();
    return std::ranges::any_of(std::initializer_list<const char*>{".png", ".svg", ".pdf"},
                               [&](const char* suffix) { return name.endsWith(suffix); });
}

bool is_feature_file(const std::filesystem::path& file) {
    return !kit::feature_format(file).empty();
}

// As further attributes, where the user has set any.
kit::Features with_levels(const FoundMap& found) {
    kit::Features features = kit::features_of(found.map);
    const bool has_levels =
        std::ranges::any_of(found.levels, [](const auto& levels) { return levels.has_value(); });
    if (!has_levels) {
        return features;
    }
    const std::size_t fields = features.fields.size();
    features.fields.push_back({"low", kit::Field::Type::real});
    features.fields.push_back({"high", kit::Field::Type::real});
    for (std::size_t i = 0; i < features.features.size() && i < found.levels.size(); ++i) {
        if (const auto& levels = found.levels[i]) {
            std::vector<kit::FieldValue>& values = features.features[i].values;
            values.resize(fields);
            values.emplace_back(levels->low);
            values.emplace_back(levels->high);
        }
    }
    return features;
}

QString picture_formats() {
    return export_text("Picture (*.png);;Drawing (*.svg);;Page (*.pdf)");
}

// The usual ones; any other suffix that the kit knows can be typed.
QString feature_formats() {
    return export_text("GeoJSON (*.geojson);;GeoPackage (*.gpkg);;Shapefile (*.shp);;"
                       "FlatGeobuf (*.fgb);;KML (*.kml);;DXF (*.dxf)");
}

QString export_text(const char* text) {
    return QCoreApplication::translate("Export", text);
}

} // namespace
} // namespace korvel::workbench
