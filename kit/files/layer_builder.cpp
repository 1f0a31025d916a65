#include "kit/files/layer_builder.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "kit/base/available_memory.h"
#include "kit/base/error.h"

namespace korvel::kit {
namespace {

// Of the values of a field: `1 << FieldValue::index()`.
constexpr unsigned boolean_bit = 1U << 1U;
constexpr unsigned integer_bit = 1U << 2U;
constexpr unsigned real_bit = 1U << 3U;

Field::Type common_type(unsigned types);

} // namespace

std::size_t LayerBuilder::field(std::string_view name) {
    std::vector<Field>& fields = out_.fields;
    std::size_t index = next_field_;
    if (index >= fields.size() || fields[index].name != name) {
        const auto known = fields_by_name_.find(name);
        index = known == fields_by_name_.end() ? fields.size() : known->second;
    }
    if (index == fields.size()) {
        fields.push_back({.name = std::string(name)});
        types_.push_back(0);
        fields_by_name_.emplace(name, index);
    }
    next_field_ = index + 1;
    return index;
}

void LayerBuilder::set(std::size_t field, FieldValue value) {
    if (values_.size() <= field) {
        values_.resize(field + 1);
        is_set_.resize(field + 1);
    }
    if (!std::holds_alternative<std::monostate>(value)) {
        types_[field] |= 1U << value.index();
    }
    values_[field] = std::move(value);
    is_set_[field] = true;
}

void LayerBuilder::set_id(FieldValue id) {
    id_ = std::move(id);
}

void LayerBuilder::forget_values() {
    values_.clear();
    is_set_.clear();
    id_ = {};
}

void LayerBuilder::add_part(Shape shape) {
    parts_.push_back({shape, out_.paths.size()});
}

void LayerBuilder::finish_feature() {
    std::vector<FieldValue> values = take_values();
    if (parts_.size() > 1) {
        join_parts();
    } else if (parts_.empty()) {
        add_part(Shape::none);
    }
    for (std::size_t i = 0; i + 1 < parts_.size(); ++i) {
        out_.features.push_back({parts_[i].shape, parts_[i].path_end, values});
    }
    out_.features.push_back({parts_.back().shape, parts_.back().path_end, std::move(values)});
    parts_.clear();
    next_field_ = 0;
}

void LayerBuilder::finish() {
    for (std::size_t i = 0; i < out_.fields.size(); ++i) {
        out_.fields[i].type = common_type(types_[i]);
        if ((types_[i] & (types_[i] - 1)) != 0) {
            convert(i, out_.fields[i].type);
        }
    }
}

// In no more memory than they need.
std::vector<FieldValue> LayerBuilder::take_values() {
    if (!std::holds_alternative<std::monostate>(id_)) {
        const std::size_t id = field("id");
        if (id >= is_set_.size() || !is_set_[id]) {
            set(id, std::move(id_));
        }
    }
    check_memory(values_.size());
    std::vector<FieldValue> values(std::make_move_iterator(values_.begin()),
                                   std::make_move_iterator(values_.end()));
    forget_values();
    return values;
}

void LayerBuilder::check_memory(std::size_t values) {
    constexpr std::size_t step = 1U << 20U;
    constexpr std::size_t reserve = 64U << 20U;
    const std::size_t before = stored_values_;
    stored_values_ += values;
    if (before / step != stored_values_ / step &&
        available_memory() < reserve + step * sizeof(FieldValue)) {
        throw output_error("not enough memory for the values of " +
                           std::to_string(out_.features.size()) + " features in " +
                           std::to_string(out_.fields.size()) + " fields");
    }
}

// Brings the parts of each shape together, in the order in which the shapes come first. Points
// become one path.
void LayerBuilder::join_parts() {
    const std::size_t path_begin = first_path();
    const std::size_t point_begin = path_begin == 0 ? 0 : out_.paths[path_begin - 1].end;
    const std::vector<FeaturePath> paths(out_.paths.begin() + static_cast<long>(path_begin),
                                         out_.paths.end());
    const std::vector<Point2> points(out_.points.begin() + static_cast<long>(point_begin),
                                     out_.points.end());
    const std::vector<Part> parts = std::exchange(parts_, {});
    out_.paths.resize(path_begin);
    out_.points.resize(point_begin);
    const auto append_all_of = [&](Shape shape) {
        std::size_t path = path_begin;
        std::size_t point = point_begin;
        const std::size_t first = out_.paths.size();
        for (const Part& part : parts) {
            for (; path < part.path_end; ++path) {
                FeaturePath copy = paths[path - path_begin];
                const std::size_t end = copy.end;
                if (part.shape == shape) {
                    out_.points.insert(out_.points.end(),
                                       points.begin() + static_cast<long>(point - point_begin),
                                       points.begin() + static_cast<long>(end - point_begin));
                    if (shape == Shape::points) {
                        out_.paths.resize(first);
                    }
                    copy.end = out_.points.size();
                    out_.paths.push_back(copy);
                }
                point = end;
            }
        }
        add_part(shape);
    };
    for (auto part = parts.begin(); part != parts.end(); ++part) {
        if (std::none_of(parts.begin(), part,
                         [&](const Part& other) { return other.shape == part->shape; })) {
            append_all_of(part->shape);
        }
    }
}

void LayerBuilder::convert(std::size_t field, Field::Type type) {
    for (Feature& feature : out_.features) {
        if (field >= feature.values.size() ||
            std::holds_alternative<std::monostate>(feature.values[field])) {
            continue;
        }
        FieldValue& value = feature.values[field];
        if (type == Field::Type::text) {
            value = text_of_value(value);
        } else if (const auto* const integer = std::get_if<std::int64_t>(&value)) {
            value = static_cast<double>(*integer);
        }
    }
}

namespace {

Field::Type common_type(unsigned types) {
    switch (types) {
    case integer_bit:
        return Field::Type::integer;
    case real_bit:
    case integer_bit | real_bit:
        return Field::Type::real;
    case boolean_bit:
        return Field::Type::boolean;
    default:
        return Field::Type::text;
    }
}

} // namespace
} // namespace korvel::kit
