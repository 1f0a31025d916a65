#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <memory>
#include <set>

#include <cpl_string.h>
#include <ogrsf_frmts.h>

#include "kit/base/error.h"
#include "kit/gdal/field_names.h"
#include "kit/gdal/gdal_errors.h"
#include "kit/gdal/gdal_formats.h"

namespace korvel::kit {
namespace {

// What a layer is written as.
struct Kind {
    OGRwkbGeometryType type = wkbUnknown;
    bool is_multiple = false; // every feature as several parts
    bool is_surface = false;  // triangles as one surface for each feature
};

using Dataset = std::unique_ptr<GDALDataset>;

Kind kind_of(const Features& features, const std::string& format);
Dataset created(GDALDriver& driver, const std::filesystem::path& file, const GdalErrors& errors);
OGRLayer& layer_of(GDALDataset& dataset, const Features& features, const Kind& kind,
                   const std::string& name, const GdalErrors& errors);
std::vector<int> add_fields(OGRLayer& layer, const Features& features, bool is_table);
void write_feature(OGRLayer& layer, const Features& features, std::size_t index, const Kind& kind,
                   const std::vector<int>& fields, double scale, const GdalErrors& errors);

[[noreturn]] void fail(const GdalErrors& errors) {
    const std::string text = errors.text("GDAL cannot write it");
    throw errors.is_refused_by_system() ? output_error(text) : input_error(text);
}

} // namespace

void write_by_gdal(const Features& features, const std::filesystem::path& file, GDALDriver& driver,
                   int decimals) {
    GdalErrors errors;
    const std::string format = driver.GetDescription();
    const bool is_table = format == "ESRI Shapefile";
    const Kind kind = kind_of(features, format);
    const double scale = decimals < 0 ? 0 : std::pow(10.0, decimals);

    Dataset dataset = created(driver, file, errors);
    const std::string name = features.name.empty() ? file.stem().string() : features.name;
    OGRLayer& layer = layer_of(*dataset, features, kind, name, errors);
    const std::vector<int> fields = add_fields(layer, features, is_table);
    errors.clear(); // of fields that the format does not have
    const bool in_one_go = dataset->TestCapability(ODsCTransactions) != 0;
    if (in_one_go && dataset->StartTransaction() != OGRERR_NONE) {
        fail(errors);
    }
    for (std::size_t i = 0; i < features.features.size(); ++i) {
        write_feature(layer, features, i, kind, fields, scale, errors);
    }
    if (in_one_go && dataset->CommitTransaction() != OGRERR_NONE) {
        fail(errors);
    }
    dataset.reset(); // writes what is still buffered
    if (errors.has_failed()) {
        fail(errors);
    }
}

namespace {

bool is_several(const Features& features, std::size_t index) {
    const std::size_t first = features.first_path(index);
    const Feature& feature = features.features[index];
    if (feature.shape == Shape::points) {
        return features.points.size() > 1 && first < feature.path_end &&
               features.path(first).size() > 1;
    }
    std::size_t parts = 0;
    for (std::size_t path = first; path < feature.path_end; ++path) {
        parts += feature.shape == Shape::lines || features.paths[path].starts_polygon ? 1 : 0;
    }
    return parts > 1;
}

Kind kind_of(const Features& features, const std::string& format) {
    std::set<Shape> shapes;
    Kind kind;
    for (std::size_t i = 0; i < features.features.size(); ++i) {
        if (features.features[i].shape != Shape::none) {
            shapes.insert(features.features[i].shape);
            kind.is_multiple = kind.is_multiple || is_several(features, i);
        }
    }
    if (format == "ESRI Shapefile" && shapes.size() > 1) {
        const std::array<const char*, 4> names = {"", "points", "lines", "polygons"};
        const Shape second = *std::next(shapes.begin());
        throw input_error(std::string("a shapefile contains one kind of shape, the layer has ") +
                          names[static_cast<std::size_t>(*shapes.begin())] + " and " +
                          names[static_cast<std::size_t>(second)]);
    }
    if (shapes.size() > 1) {
        kind.is_multiple = false; // each as it is
        return kind;
    }
    const Shape shape = shapes.empty() ? Shape::polygons : *shapes.begin();
    kind.is_surface = features.is_tin && format == "GPKG";
    kind.type = kind.is_surface          ? wkbTIN
                : shape == Shape::points ? wkbPoint
                : shape == Shape::lines  ? wkbLineString
                                         : wkbPolygon;
    if (kind.is_multiple && !kind.is_surface &&
        !(format == "ESRI Shapefile" && shape != Shape::points)) {
        kind.type = OGR_GT_GetCollection(kind.type);
    }
    return kind;
}

Dataset created(GDALDriver& driver, const std::filesystem::path& file, const GdalErrors& errors) {
    Dataset dataset(driver.Create(file.string().c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    if (dataset == nullptr) {
        fail(errors);
    }
    return dataset;
}

// Neither from the network nor from a file, which definitions may name.
OGRSpatialReference system_of(const std::string& reference) {
    const std::array<const char*, 3> options = {"ALLOW_NETWORK_ACCESS=NO", "ALLOW_FILE_ACCESS=NO",
                                                nullptr};
    OGRSpatialReference system;
    if (system.SetFromUserInput(reference.c_str(), options.data()) != OGRERR_NONE) {
        throw input_error(reference + ": not a reference system that GDAL knows",
                          {.value = reference});
    }
    system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER); // longitude first
    return system;
}

// A name that no field has.
std::string unused(const Features& features, std::string name) {
    const auto is_used = [&](const Field& field) {
        return EQUAL(field.name.c_str(), name.c_str());
    };
    while (std::any_of(features.fields.begin(), features.fields.end(), is_used)) {
        name += "_";
    }
    return name;
}

OGRLayer& layer_of(GDALDataset& dataset, const Features& features, const Kind& kind,
                   const std::string& name, const GdalErrors& errors) {
    const std::string format = dataset.GetDriver()->GetDescription();
    CPLStringList options;
    if (format == "ESRI Shapefile") {
        options.SetNameValue("ENCODING", "UTF-8");
    } else if (format == "GPKG") {
        options.SetNameValue("FID", unused(features, "fid").c_str());
        options.SetNameValue("GEOMETRY_NAME", unused(features, "geom").c_str());
    }
    OGRSpatialReference system;
    if (!features.reference.empty()) {
        system = system_of(features.reference);
    }
    OGRLayer* layer = dataset.CreateLayer(
        name.c_str(), features.reference.empty() ? nullptr : &system, kind.type, options.List());
    if (layer == nullptr) {
        fail(errors);
    }
    return *layer;
}

void set_type(OGRFieldDefn& definition, Field::Type type, bool is_table) {
    if (type == Field::Type::integer) {
        definition.SetType(OFTInteger64);
    } else if (type == Field::Type::real) {
        definition.SetType(OFTReal);
    } else if (type == Field::Type::boolean) {
        definition.SetType(OFTInteger);
        is_table ? definition.SetWidth(1) : definition.SetSubType(OFSTBoolean);
    }
}

// For each field its number in the layer, or −1 where the format does not have it.
std::vector<int> add_fields(OGRLayer& layer, const Features& features, bool is_table) {
    constexpr std::size_t bytes_in_table = 10;
    const std::vector<std::string> names =
        field_names(features.fields, is_table ? bytes_in_table : std::string::npos);
    std::vector<int> indices(names.size(), -1);
    for (std::size_t i = 0; i < names.size(); ++i) {
        OGRFieldDefn field(names[i].c_str(), OFTString);
        set_type(field, features.fields[i].type, is_table);
        const int before = layer.GetLayerDefn()->GetFieldCount();
        if (layer.TestCapability(OLCCreateField) != 0) {
            layer.CreateField(&field, TRUE);
        }
        indices[i] = layer.GetLayerDefn()->GetFieldCount() > before
                         ? before
                         : layer.GetLayerDefn()->GetFieldIndex(names[i].c_str());
    }
    return indices;
}

std::unique_ptr<OGRGeometry> geometry_of(const Features& features, std::size_t index,
                                         const Kind& kind, double scale);

void set_value(OGRFeature& feature, int field, const FieldValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        feature.SetField(field, text->c_str());
    } else if (const auto* number = std::get_if<double>(&value)) {
        feature.SetField(field, *number);
    } else if (const auto* integer = std::get_if<std::int64_t>(&value)) {
        feature.SetField(field, static_cast<GIntBig>(*integer));
    } else if (const auto* truth = std::get_if<bool>(&value)) {
        feature.SetField(field, *truth ? 1 : 0);
    } else {
        feature.SetFieldNull(field);
    }
}

void write_feature(OGRLayer& layer, const Features& features, std::size_t index, const Kind& kind,
                   const std::vector<int>& fields, double scale, const GdalErrors& errors) {
    OGRFeature feature(layer.GetLayerDefn());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i] >= 0) {
            set_value(feature, fields[i], features.value(index, i));
        }
    }
    feature.SetGeometryDirectly(geometry_of(features, index, kind, scale).release());
    if (layer.CreateFeature(&feature) != OGRERR_NONE) {
        fail(errors);
    }
}

void add_points(OGRSimpleCurve& line, std::span<const Point2> points, double scale) {
    const auto rounded = [&](double x) { return scale > 0 ? std::round(x * scale) / scale : x; };
    line.setNumPoints(static_cast<int>(points.size()), FALSE);
    for (std::size_t i = 0; i < points.size(); ++i) {
        line.setPoint(static_cast<int>(i), rounded(points[i][0]), rounded(points[i][1]));
    }
}

// The points, lines or polygons of a feature.
std::vector<std::unique_ptr<OGRGeometry>> parts_of(const Features& features, std::size_t index,
                                                   bool are_triangles, double scale) {
    std::vector<std::unique_ptr<OGRGeometry>> parts;
    const Feature& feature = features.features[index];
    for (std::size_t i = features.first_path(index); i < feature.path_end; ++i) {
        if (feature.shape == Shape::polygons) {
            if (features.paths[i].starts_polygon || parts.empty()) {
                parts.push_back(are_triangles ? std::make_unique<OGRTriangle>()
                                              : std::make_unique<OGRPolygon>());
            }
            auto ring = std::make_unique<OGRLinearRing>();
            add_points(*ring, features.path(i), scale);
            parts.back()->toPolygon()->addRingDirectly(ring.release());
            continue;
        }
        auto line = std::make_unique<OGRLineString>();
        add_points(*line, features.path(i), scale);
        if (feature.shape == Shape::lines) {
            parts.push_back(std::move(line));
            continue;
        }
        for (int k = 0; k < line->getNumPoints(); ++k) {
            parts.push_back(std::make_unique<OGRPoint>(line->getX(k), line->getY(k)));
        }
    }
    return parts;
}

std::unique_ptr<OGRGeometry> collection_for(Shape shape) {
    if (shape == Shape::points) {
        return std::make_unique<OGRMultiPoint>();
    }
    if (shape == Shape::lines) {
        return std::make_unique<OGRMultiLineString>();
    }
    return std::make_unique<OGRMultiPolygon>();
}

// Nothing for a feature without a shape.
std::unique_ptr<OGRGeometry> geometry_of(const Features& features, std::size_t index,
                                         const Kind& kind, double scale) {
    auto parts = parts_of(features, index, kind.is_surface, scale);
    if (kind.is_surface && !parts.empty()) {
        auto surface = std::make_unique<OGRTriangulatedSurface>();
        for (auto& part : parts) {
            surface->addGeometryDirectly(part.release());
        }
        return surface;
    }
    if (parts.empty() || (parts.size() == 1 && !kind.is_multiple)) {
        return parts.empty() ? nullptr : std::move(parts.front());
    }
    auto several = collection_for(features.features[index].shape);
    for (auto& part : parts) {
        several->toGeometryCollection()->addGeometryDirectly(part.release());
    }
    return several;
}

} // namespace
} // namespace korvel::kit
