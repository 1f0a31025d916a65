#include "kit/files/geojson_parser.h"

#include <algorithm>
#include <utility>

#include "kit/files/json_text.h"
#include "kit/files/text_file.h"

namespace korvel::kit {
namespace {

using Kind = GeoJsonType::Kind;

// Files of maps have less than ten.
constexpr std::size_t most_levels = 1000;

std::string shown_value(const FieldValue& value);

} // namespace

const std::array<GeoJsonParser::MemberName, 4> GeoJsonParser::contents_names = {{
    {"features", Member::features, Kind::collection},
    {"geometry", Member::geometry, Kind::feature},
    {"geometries", Member::geometries, Kind::geometries},
    {"coordinates", Member::coordinates, Kind::geometry},
}};

GeoJsonParser::GeoJsonParser(const JsonInput& input, Features& out)
    : out_(out), place_{input}, builder_(out), coordinates_(out, place_) {
    out.reference = "EPSG:4326";
}

void GeoJsonParser::value(FieldValue value) {
    switch (in_) {
    case In::object:
        member_value(value);
        break;
    case In::properties:
        builder_.set(field_, std::move(value));
        break;
    case In::property:
        append_to_property(value);
        break;
    case In::crs:
        if (const auto* const name = std::get_if<std::string>(&value); name && is_crs_name_) {
            out_.reference = reference_of_crs(*name);
        }
        break;
    case In::coordinates:
        refuse(shown_value(value), "a number");
    case In::features:
        refuse(shown_value(value), "a feature");
    case In::geometries:
        refuse(shown_value(value), "a geometry");
    case In::nothing:
        refuse(shown_value(value), "the object of GeoJSON");
    case In::skipped:
        break;
    }
}

void GeoJsonParser::number(double number) {
    if (in_ == In::coordinates) {
        coordinates_.number(number);
    } else {
        value(number);
    }
}

void GeoJsonParser::integer(std::int64_t number) {
    if (in_ == In::coordinates) {
        coordinates_.number(static_cast<double>(number));
    } else {
        value(number);
    }
}

void GeoJsonParser::key(const std::string& key) {
    if (in_ == In::object) {
        objects_.back().member = member_of(objects_.back(), key);
    } else if (in_ == In::properties) {
        field_ = builder_.field(key);
    } else if (in_ == In::crs) {
        is_crs_name_ = nesting_ == 2 && key == "name";
    } else if (in_ == In::property) {
        append_to_property(key);
        property_ += ':';
    }
}

void GeoJsonParser::start_object() {
    deepen();
    switch (in_) {
    case In::nothing:
        push_object(Role::whole);
        break;
    case In::features:
        ++place_.feature;
        push_object(Role::feature);
        break;
    case In::geometries:
        push_object(Role::geometry);
        break;
    case In::coordinates:
        refuse("an object", "a number");
    default:
        open_member(false);
    }
}

void GeoJsonParser::start_array() {
    deepen();
    switch (in_) {
    case In::nothing:
        refuse("an array", "the object of GeoJSON");
    case In::features:
        refuse("an array", "a feature");
    case In::geometries:
        refuse("an array", "a geometry");
    case In::coordinates:
        coordinates_.start_array();
        break;
    default:
        open_member(true);
    }
}

void GeoJsonParser::end_object() {
    --depth_;
    if (in_ == In::object) {
        finish_object();
        in_ = objects_.back().outside;
        objects_.pop_back();
    } else if (in_ == In::properties) {
        in_ = In::object;
    } else {
        close_inside('}');
    }
}

void GeoJsonParser::end_array() {
    --depth_;
    if (in_ == In::coordinates) {
        in_ = coordinates_.end_array() ? In::object : In::coordinates;
    } else if (in_ == In::features || in_ == In::geometries) {
        place_.feature = in_ == In::features ? -1 : place_.feature;
        in_ = In::object;
    } else {
        close_inside(']');
    }
}

void GeoJsonParser::deepen() {
    if (++depth_ > most_levels) {
        place_.fail("objects and arrays nested more than " + std::to_string(most_levels) + " deep");
    }
}

void GeoJsonParser::push_object(Role role) {
    objects_.push_back({.role = role, .outside = in_});
    in_ = In::object;
}

// Those that do not belong to an object of this type are foreign ones.
GeoJsonParser::Member GeoJsonParser::member_of(const Object& object, std::string_view key) {
    if (key == "type") {
        return Member::type;
    }
    if (key == "properties" || key == "id") {
        const bool fits = object.role != Role::geometry && can_have(object, Kind::feature);
        return !fits ? Member::other : key == "id" ? Member::id : Member::properties;
    }
    if (object.role == Role::whole && (key == "crs" || key == "name")) {
        return key == "crs" ? Member::crs : Member::name;
    }
    for (const MemberName& any : contents_names) {
        const bool is_geometry = any.kind == Kind::geometries || any.kind == Kind::geometry;
        const bool fits = object.role == Role::whole ||
                          (object.role == Role::feature && any.kind == Kind::feature) ||
                          (object.role == Role::geometry && is_geometry);
        if (any.name == key && fits && can_have(object, any.kind)) {
            return any.member;
        }
    }
    return Member::other;
}

// As far as its type, or what it contains, is known already.
bool GeoJsonParser::can_have(const Object& object, Kind kind) {
    if (object.type != nullptr) {
        return object.type->kind == kind;
    }
    return std::none_of(contents_names.begin(), contents_names.end(), [&](const MemberName& any) {
        return any.member == object.contents && any.kind != kind;
    });
}

void GeoJsonParser::member_value(const FieldValue& value) {
    const bool is_null = std::holds_alternative<std::monostate>(value);
    const auto* const text = std::get_if<std::string>(&value);
    switch (objects_.back().member) {
    case Member::type:
        set_type(value);
        break;
    case Member::name:
        out_.name = text != nullptr ? *text : out_.name;
        break;
    case Member::id:
        builder_.set_id(value);
        break;
    case Member::crs:
        out_.reference = is_null ? std::string() : out_.reference;
        break;
    case Member::other:
        break;
    case Member::properties:
    case Member::geometry:
        if (is_null) {
            break;
        }
        [[fallthrough]];
    default:
        refuse_member(shown_value(value));
    }
}

void GeoJsonParser::set_type(const FieldValue& value) {
    Object& object = objects_.back();
    const auto* const text = std::get_if<std::string>(&value);
    const GeoJsonType* const type = text != nullptr ? find_geojson_type(*text) : nullptr;
    if (type == nullptr) {
        refuse(shown_value(value), "a type of GeoJSON");
    }
    const bool is_geometry = type->kind == Kind::geometry || type->kind == Kind::geometries;
    if (object.role == Role::feature && type->kind != Kind::feature) {
        refuse(shown_value(value), "the type Feature");
    }
    if (object.role == Role::geometry && !is_geometry) {
        refuse(shown_value(value), "the type of a geometry");
    }
    for (const MemberName& any : contents_names) {
        if (any.member == object.contents && any.kind != type->kind) {
            place_.fail("a " + *text + " with the member '" + std::string(any.name) + "'", *text);
        }
    }
    object.type = type;
    is_topology_ = type->kind == Kind::topology;
}

// The value of a member begins, or one deeper within a member.
void GeoJsonParser::open_member(bool is_array) {
    if (in_ != In::object) {
        open_inside(is_array);
        return;
    }
    Object& object = objects_.back();
    const Member member = object.member;
    if (member == Member::other || member == Member::crs || member == Member::name) {
        in_ = member == Member::crs ? In::crs : In::skipped;
        nesting_ = 1;
    } else if (member == Member::properties && !is_array) {
        in_ = In::properties;
    } else if (member == Member::geometry && !is_array) {
        note_contents();
        push_object(Role::geometry);
    } else if (member == Member::coordinates && is_array) {
        note_contents();
        in_ = In::coordinates;
        coordinates_.start(object.type != nullptr ? object.type->depth : 0);
    } else if ((member == Member::features || member == Member::geometries) && is_array) {
        note_contents();
        in_ = member == Member::features ? In::features : In::geometries;
    } else {
        refuse_member(is_array ? "an array" : "an object");
    }
}

void GeoJsonParser::open_inside(bool is_array) {
    if (in_ == In::properties) {
        in_ = In::property;
        nesting_ = 0;
    }
    if (in_ == In::property) {
        append_separator();
        property_ += is_array ? '[' : '{';
    }
    ++nesting_;
}

void GeoJsonParser::close_inside(char bracket) {
    --nesting_;
    if (in_ == In::property) {
        property_ += bracket;
        if (nesting_ == 0) {
            builder_.set(field_, std::exchange(property_, {}));
            in_ = In::properties;
        }
    } else if (nesting_ == 0) {
        in_ = In::object;
    }
}

void GeoJsonParser::append_separator() {
    if (!property_.empty() && std::string_view("[{:").find(property_.back()) == std::string::npos) {
        property_ += ',';
    }
}

void GeoJsonParser::append_to_property(const FieldValue& value) {
    append_separator();
    append_json_value(property_, value);
}

// Properties before "features" were foreign members.
void GeoJsonParser::note_contents() {
    Object& object = objects_.back();
    if (object.contents != Member::other) {
        place_.fail("an object with two geometries, or two arrays of features");
    }
    object.contents = object.member;
    if (object.member == Member::features) {
        builder_.forget_values();
    }
}

void GeoJsonParser::finish_object() {
    const Object& object = objects_.back();
    if (object.type == nullptr) {
        place_.fail(object.role == Role::geometry  ? "a geometry without a type"
                    : object.role == Role::feature ? "a feature without a type"
                                                   : "an object without a type of GeoJSON");
    }
    if (object.type->kind == Kind::collection && object.contents == Member::other) {
        place_.fail("a FeatureCollection without features");
    }
    if (object.type->kind == Kind::geometry || object.type->kind == Kind::geometries) {
        finish_geometry(object);
    }
    if (object.type->kind != Kind::collection && object.role != Role::geometry) {
        builder_.finish_feature();
    }
}

void GeoJsonParser::finish_geometry(const Object& object) {
    const GeoJsonType& type = *object.type;
    if (object.contents == Member::other) {
        place_.fail("a " + std::string(type.name) + " without " +
                    (type.kind == Kind::geometry ? "coordinates" : "geometries"));
    }
    if (type.kind == Kind::geometry) {
        coordinates_.check(type.depth);
        coordinates_.shape(type.shape);
        builder_.add_part(type.shape);
    }
}

void GeoJsonParser::refuse(const std::string& found, const char* expected) const {
    place_.fail(found + " where " + expected + " is expected", found);
}

void GeoJsonParser::refuse_member(const std::string& found) const {
    const Member member = objects_.back().member;
    const char* expected = "an array of positions";
    if (member == Member::type || member == Member::id) {
        expected = member == Member::type ? "a type of GeoJSON" : "an id";
    } else if (member == Member::properties || member == Member::geometry) {
        expected = member == Member::properties ? "an object of properties" : "a geometry";
    } else if (member == Member::features || member == Member::geometries) {
        expected = member == Member::features ? "an array of features" : "an array of geometries";
    }
    refuse(found, expected);
}

namespace {

std::string shown_value(const FieldValue& value) {
    return std::holds_alternative<std::monostate>(value) ? "null"
                                                         : kit::quoted(text_of_value(value));
}

} // namespace
} // namespace korvel::kit
