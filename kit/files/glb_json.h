#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "kit/files/byte_input.h"

namespace korvel::kit {

/// A value in the JSON text of a glTF, which knows its place for messages: "meshes[2].primitives".
class GlbValue {
public:
    using Json = nlohmann::json;

    /// All of the text.
    GlbValue(const Json& json, const std::string& file) : GlbValue(json, file, "") {}

    /// A member of an object, or nothing if it has none of this name.
    std::optional<GlbValue> find(const char* name) const;

    /// The same; fails if there is none.
    GlbValue member(const char* name) const;

    /// The number of the elements of an array, also of a member that need not be there.
    std::size_t size() const;
    std::size_t size(const char* name) const;

    /// An element of an array; fails if there is none.
    GlbValue element(std::size_t index) const;

    /// An integer that is not negative, of this value or of a member.
    std::size_t whole() const;
    std::size_t whole(const char* name, std::size_t if_absent) const;

    double number() const;
    std::vector<double> numbers(std::size_t count) const;
    std::string text() const;
    bool is_true() const { return json_->is_boolean() && json_->get<bool>(); }
    const Json& json() const { return *json_; }

    /// Throws an input error "FILE: PLACE: message".
    [[noreturn]] void fail(const std::string& message) const;

private:
    GlbValue(const Json& json, const std::string& file, std::string place)
        : json_(&json), file_(&file), place_(std::move(place)) {}

    const Json* json_;
    const std::string* file_;
    std::string place_;
};

/// Parses the text; fails at what is no JSON, or nested without need.
nlohmann::json parse_glb_json(const std::string& text, const ByteInput& input);

} // namespace korvel::kit
