#pragma once

#include <cstdint>
#include <string>

#include <ogrsf_frmts.h>

#include "kit/files/features.h"

namespace korvel::kit {

/// Builds our features from those of GDAL.
class GdalFeatures {
public:
    /// Takes name, reference system and fields of a layer. Messages begin with `file`. The features
    /// may take that many bytes.
    GdalFeatures(std::string file, GDALDataset& dataset, OGRLayer& layer, std::uint64_t memory);

    /// Appends a feature; one of several shapes as several with the same attributes. Throws an
    /// `Error` for coordinates that are not finite, and when the memory is not enough.
    void add(const OGRFeature& feature);

    Features take() { return std::move(features_); }

private:
    void add_fields(const OGRFeatureDefn& definition, bool is_drawing);
    std::vector<FieldValue> values_of(const OGRFeature& feature);
    void add_shape(Shape shape, const OGRGeometry& geometry);
    void add_parts(Shape shape, const OGRGeometry& geometry);
    void add_path(const OGRSimpleCurve& line, bool starts_polygon);
    void add_point(double x, double y, bool has_more);
    void end_path(bool starts_polygon);
    void stay_in_memory() const;

    std::string file_;
    std::uint64_t memory_;
    std::uint64_t text_bytes_ = 0;
    bool has_y_first_ = false;
    long long id_ = 0; // of the feature in hand
    Features features_;
};

} // namespace korvel::kit
