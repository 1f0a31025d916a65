#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "kit/files/features.h"

namespace korvel::kit {

/// Adds features to a layer one after the other. The points and paths of a feature are appended to
/// those of the layer first, then its values are set, in either order, and it is finished.
class LayerBuilder {
public:
    explicit LayerBuilder(Features& out) : out_(out) {}

    /// The index of a field, which is added if there is none of that name. Fast for fields in the
    /// same order in every feature.
    std::size_t field(std::string_view name);

    /// The value of a field of this feature.
    void set(std::size_t field, FieldValue value);

    /// The identifier of this feature, which is the value of the field "id" unless the feature has
    /// set that.
    void set_id(FieldValue id);

    void forget_values();

    /// All paths since the last part are of this shape.
    void add_part(Shape shape);

    /// Ends the feature: as one without a shape if it has no part, as several with the same values
    /// if it has parts of several shapes. Throws an output error when many fields that few features
    /// have would take more memory than there is.
    void finish_feature();

    /// Ends the layer: gives the fields their types. Values of a field that has integers and reals
    /// become reals, those of any other mixture texts.
    void finish();

private:
    struct Part {
        Shape shape;
        std::size_t path_end;
    };

    std::size_t first_path() const {
        return out_.features.empty() ? 0 : out_.features.back().path_end;
    }
    std::vector<FieldValue> take_values();
    void check_memory(std::size_t values);
    void join_parts();
    void convert(std::size_t field, Field::Type type);

    Features& out_;
    std::vector<unsigned> types_; // of each field, those of its values as bits
    std::map<std::string, std::size_t, std::less<>> fields_by_name_;
    std::size_t next_field_ = 0;
    std::size_t stored_values_ = 0;
    std::vector<FieldValue> values_;
    std::vector<bool> is_set_;
    FieldValue id_;
    std::vector<Part> parts_;
};

} // namespace korvel::kit
