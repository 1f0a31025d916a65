#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kit/files/features.h"
#include "kit/files/geojson_coordinates.h"
#include "kit/files/geojson_types.h"
#include "kit/files/json_input.h"
#include "kit/files/layer_builder.h"

namespace korvel::kit {

/// Builds a layer from the events of a JSON text: values, and the beginnings and ends of objects
/// and arrays. Members may come in any order. Events that do not fit GeoJSON throw an input error.
/// Nothing is recursive, and what is kept of the nesting is as large as that of geometries.
class GeoJsonParser {
public:
    GeoJsonParser(const JsonInput& input, Features& out);
    GeoJsonParser(const GeoJsonParser&) = delete;
    GeoJsonParser& operator=(const GeoJsonParser&) = delete;

    /// A text, truth value or null.
    void value(FieldValue value);
    void number(double number);
    void integer(std::int64_t number);
    void key(const std::string& key);
    void start_object();
    void end_object();
    void start_array();
    void end_array();

    /// After the last event.
    void finish() { builder_.finish(); }

    /// The text is TopoJSON, so that it need not be read further.
    bool is_topology() const { return is_topology_; }

private:
    enum class In {
        nothing,
        object, // the last one of `objects_`
        features,
        geometries,
        coordinates,
        properties,
        property, // an object or array as the value of one
        crs,
        skipped,
    };
    enum class Role { whole, feature, geometry };
    enum class Member {
        other,
        type,
        name,
        id,
        crs,
        properties,
        features,
        geometry,
        geometries,
        coordinates,
    };

    /// An object of GeoJSON whose end has not come.
    struct Object {
        Role role = Role::whole;
        In outside = In::nothing;
        Member member = Member::other; // the present one
        const GeoJsonType* type = nullptr;
        Member contents = Member::other; // the one with features or a geometry, once it has come
    };

    /// A member of GeoJSON, and the types of objects that have it.
    struct MemberName {
        std::string_view name;
        Member member;
        GeoJsonType::Kind kind;
    };
    static const std::array<MemberName, 4> contents_names;

    static Member member_of(const Object& object, std::string_view key);
    static bool can_have(const Object& object, GeoJsonType::Kind kind);
    void deepen();

    void member_value(const FieldValue& value);
    void set_type(const FieldValue& value);
    void note_contents();
    void push_object(Role role);
    void open_member(bool is_array);
    void open_inside(bool is_array);
    void close_inside(char bracket);
    void finish_object();
    void finish_geometry(const Object& object);
    void append_separator();
    void append_to_property(const FieldValue& value);
    [[noreturn]] void refuse(const std::string& found, const char* expected) const;
    [[noreturn]] void refuse_member(const std::string& found) const;

    Object& object() { return objects_.back(); }

    Features& out_;
    GeoJsonPlace place_;
    LayerBuilder builder_;
    GeoJsonCoordinates coordinates_;
    In in_ = In::nothing;
    std::vector<Object> objects_;
    std::size_t depth_ = 0;   // of everything
    std::size_t nesting_ = 0; // within what is skipped, a property, or "crs"
    std::size_t field_ = 0;
    std::string property_; // its JSON text so far
    bool is_crs_name_ = false;
    bool is_topology_ = false;
};

} // namespace korvel::kit
