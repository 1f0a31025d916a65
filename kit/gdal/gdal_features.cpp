#include "kit/gdal/gdal_features.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>

#include <cpl_conv.h>
#include <cpl_string.h>

#include "kit/base/error.h"
#include "kit/base/number_text.h"

namespace korvel::kit {
namespace {

struct FreeText {
    void operator()(char* text) const { CPLFree(text); }
};
using OwnedText = std::unique_ptr<char, FreeText>;

// A text as UTF-8. Tables of shapefiles without a record of their encoding have the Western one.
std::string utf8(const char* text) {
    if (CPLIsUTF8(text, -1) != 0) {
        return text;
    }
    return OwnedText(CPLRecode(text, CPL_ENC_ISO8859_1, CPL_ENC_UTF8)).get();
}

// "EPSG:25832", or the definition in one line of WKT; empty for none and for undefined ones.
std::string reference_of(const OGRSpatialReference* system) {
    if (system == nullptr || system->IsLocal() != 0 ||
        std::strncmp(system->GetName() != nullptr ? system->GetName() : "", "Undefined", 9) == 0) {
        return {};
    }
    const auto code_of = [](const OGRSpatialReference& known) -> std::string {
        const char* authority = known.GetAuthorityName(nullptr);
        const char* code = known.GetAuthorityCode(nullptr);
        const std::string id =
            authority != nullptr && code != nullptr ? std::string(authority) + ":" + code : "";
        return id == "OGC:CRS84" ? "EPSG:4326" : id;
    };
    std::string code = code_of(*system);
    if (code.empty()) {
        constexpr int equal_but_for_names = 90; // percent
        const std::unique_ptr<OGRSpatialReference> known(
            system->FindBestMatch(equal_but_for_names, "EPSG", nullptr));
        code = known != nullptr ? code_of(*known) : code;
    }
    if (code.rfind("EPSG:", 0) == 0) {
        return code;
    }
    const std::array<const char*, 3> options = {"FORMAT=WKT2_2019", "MULTILINE=NO", nullptr};
    char* text = nullptr;
    const bool is_written = system->exportToWkt(&text, options.data()) == OGRERR_NONE;
    const OwnedText owned(text);
    return is_written && text != nullptr ? text : "";
}

// Whether the first coordinate of the points is the second of a map.
bool has_y_first(const OGRSpatialReference* system) {
    return system != nullptr &&
           (system->EPSGTreatsAsLatLong() != 0 || system->EPSGTreatsAsNorthingEasting() != 0) &&
           system->GetDataAxisToSRSAxisMapping().front() == 1;
}

Field::Type type_of(const OGRFieldDefn& field) {
    switch (field.GetType()) {
    case OFTInteger:
        return field.GetSubType() == OFSTBoolean ? Field::Type::boolean : Field::Type::integer;
    case OFTInteger64:
        return Field::Type::integer;
    case OFTReal:
        return Field::Type::real;
    default:
        return Field::Type::text;
    }
}

// Dates in the international form, lists as JSON.
std::string text_of_field(const OGRFeature& feature, int index) {
    switch (feature.GetFieldDefnRef(index)->GetType()) {
    case OFTIntegerList:
    case OFTInteger64List:
    case OFTRealList:
    case OFTStringList:
        return OwnedText(feature.GetFieldAsSerializedJSon(index)).get();
    case OFTDate:
    case OFTDateTime: {
        std::string date = feature.GetFieldAsString(index);
        std::replace(date.begin(), date.end(), '/', '-');
        std::replace(date.begin(), date.end(), ' ', 'T');
        return date;
    }
    default:
        return utf8(feature.GetFieldAsString(index));
    }
}

Shape shape_of(const OGRGeometry& geometry) {
    switch (wkbFlatten(geometry.getGeometryType())) {
    case wkbPoint:
    case wkbMultiPoint:
        return Shape::points;
    case wkbLineString:
    case wkbLinearRing:
    case wkbMultiLineString:
        return Shape::lines;
    case wkbPolygon:
    case wkbMultiPolygon:
    case wkbTriangle:
    case wkbTIN:
    case wkbPolyhedralSurface:
        return Shape::polygons;
    default:
        return Shape::none;
    }
}

// Calls a function with each part of a geometry that contains no others, polygons being one.
template <class Call>
void for_each_part(const OGRGeometry& geometry, const Call& call) {
    const OGRwkbGeometryType type = wkbFlatten(geometry.getGeometryType());
    if (geometry.IsEmpty() != 0) {
        return;
    }
    if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection) != 0) {
        for (const OGRGeometry* part : *geometry.toGeometryCollection()) {
            for_each_part(*part, call);
        }
    } else if (OGR_GT_IsSubClassOf(type, wkbPolyhedralSurface) != 0) {
        for (const OGRPolygon* face : *geometry.toPolyhedralSurface()) {
            for_each_part(*face, call);
        }
    } else {
        call(geometry);
    }
}

} // namespace

GdalFeatures::GdalFeatures(std::string file, GDALDataset& dataset, OGRLayer& layer,
                           std::uint64_t memory)
    : file_(std::move(file)), memory_(memory), has_y_first_(has_y_first(layer.GetSpatialRef())) {
    features_.name = utf8(layer.GetName());
    features_.reference = reference_of(layer.GetSpatialRef());
    const std::string driver =
        dataset.GetDriver() != nullptr ? dataset.GetDriver()->GetDescription() : "";
    add_fields(*layer.GetLayerDefn(), driver == "DXF");
}

// The text of a drawing's label is its name.
void GdalFeatures::add_fields(const OGRFeatureDefn& definition, bool is_drawing) {
    for (int i = 0; i < definition.GetFieldCount(); ++i) {
        const OGRFieldDefn& field = *definition.GetFieldDefn(i);
        const std::string name = utf8(field.GetNameRef());
        features_.fields.push_back({is_drawing && name == "Text" ? "name" : name, type_of(field)});
    }
}

void GdalFeatures::add(const OGRFeature& feature) {
    id_ = feature.GetFID();
    const std::vector<FieldValue> values = values_of(feature);
    const OGRGeometry* geometry = feature.GetGeometryRef();
    std::unique_ptr<OGRGeometry> linear;
    if (geometry != nullptr && geometry->hasCurveGeometry() != 0) {
        linear.reset(geometry->getLinearGeometry());
        geometry = linear.get();
    }
    const std::size_t before = features_.features.size();
    for (const Shape shape : {Shape::points, Shape::lines, Shape::polygons}) {
        const std::size_t first_path = features_.paths.size();
        if (geometry != nullptr) {
            add_shape(shape, *geometry);
        }
        if (features_.paths.size() > first_path) {
            features_.features.push_back({shape, features_.paths.size(), values});
        }
    }
    if (features_.features.size() == before) {
        features_.features.push_back({Shape::none, features_.paths.size(), values});
    }
    stay_in_memory();
}

std::vector<FieldValue> GdalFeatures::values_of(const OGRFeature& feature) {
    std::vector<FieldValue> values(features_.fields.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const int index = static_cast<int>(i);
        if (feature.IsFieldSetAndNotNull(index) == 0) {
            continue;
        }
        switch (features_.fields[i].type) {
        case Field::Type::boolean:
            values[i] = feature.GetFieldAsInteger(index) != 0;
            break;
        case Field::Type::integer:
            values[i] = std::int64_t{feature.GetFieldAsInteger64(index)};
            break;
        case Field::Type::real:
            values[i] = feature.GetFieldAsDouble(index);
            break;
        case Field::Type::text:
            std::string text = text_of_field(feature, index);
            text_bytes_ += text.size();
            values[i] = std::move(text);
        }
    }
    return values;
}

// The parts of one shape; points become one path.
void GdalFeatures::add_shape(Shape shape, const OGRGeometry& geometry) {
    const std::size_t first = features_.points.size();
    for_each_part(geometry, [&](const OGRGeometry& part) {
        if (shape_of(part) == shape) {
            add_parts(shape, part);
        }
    });
    if (shape == Shape::points && features_.points.size() > first) {
        end_path(true);
    }
}

void GdalFeatures::add_parts(Shape shape, const OGRGeometry& geometry) {
    if (shape == Shape::points) {
        const OGRPoint& point = *geometry.toPoint();
        add_point(point.getX(), point.getY(), geometry.CoordinateDimension() > 2);
    } else if (shape == Shape::lines) {
        add_path(*geometry.toSimpleCurve(), true);
    } else {
        bool is_outer = true;
        for (const OGRLinearRing* ring : *geometry.toPolygon()) {
            if (ring->getNumPoints() > 0) {
                add_path(*ring, is_outer);
            }
            is_outer = false;
        }
    }
}

void GdalFeatures::add_path(const OGRSimpleCurve& line, bool starts_polygon) {
    const bool has_more = line.CoordinateDimension() > 2;
    for (int i = 0; i < line.getNumPoints(); ++i) {
        add_point(line.getX(i), line.getY(i), has_more);
    }
    const bool is_ring = wkbFlatten(line.getGeometryType()) == wkbLinearRing ||
                         EQUAL(line.getGeometryName(), "LINEARRING");
    if (is_ring && line.get_IsClosed() == 0) {
        add_point(line.getX(0), line.getY(0), false);
    }
    end_path(starts_polygon);
}

void GdalFeatures::add_point(double x, double y, bool has_more) {
    if (!std::isfinite(x) || !std::isfinite(y)) {
        const std::string text = number_text(x) + " " + number_text(y);
        throw input_error(file_ + ": feature " + std::to_string(id_) + ": the point " + text +
                              " is not finite",
                          {.file = file_, .value = text});
    }
    if (has_y_first_) {
        std::swap(x, y);
    }
    features_.points.push_back({x, y});
    features_.heights += has_more ? 1 : 0;
}

void GdalFeatures::end_path(bool starts_polygon) {
    features_.paths.push_back({features_.points.size(), starts_polygon});
}

void GdalFeatures::stay_in_memory() const {
    const std::uint64_t bytes =
        features_.points.size() * sizeof(Point2) + features_.paths.size() * sizeof(FeaturePath) +
        features_.features.size() *
            (sizeof(Feature) + features_.fields.size() * sizeof(FieldValue)) +
        text_bytes_;
    if (bytes > memory_) {
        throw input_error(file_ + ": feature " + std::to_string(id_) +
                              ": the features up to here take more than " +
                              std::to_string(memory_) + " bytes of memory",
                          {.file = file_});
    }
}

} // namespace korvel::kit
