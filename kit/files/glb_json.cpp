#include "kit/files/glb_json.h"

#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>

#include "kit/base/error.h"

namespace korvel::kit {

nlohmann::json parse_glb_json(const std::string& text, const ByteInput& input) {
    using Json = nlohmann::json;
    constexpr int deepest = 100;
    const auto fail = [&](const std::string& message) {
        throw input_error(input.name() + ": " + message, {.file = input.name()});
    };
    try {
        Json json = Json::parse(text, [&](int depth, Json::parse_event_t /*event*/, Json&) {
            if (depth > deepest) {
                fail("the JSON text is nested in more than 100 levels");
            }
            return true;
        });
        if (!json.is_object()) {
            fail("the JSON text is no object");
        }
        return json;
    } catch (const Json::exception& error) {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: …"
        const std::string_view reason = error.what();
        fail("no valid JSON: " + std::string(reason.substr(reason.find("] ") + 2)));
    }
    return {};
}

std::optional<GlbValue> GlbValue::find(const char* name) const {
    if (!json_->is_object()) {
        fail("an object is expected");
    }
    const auto found = json_->find(name);
    if (found == json_->end()) {
        return {};
    }
    return GlbValue(*found, *file_, place_.empty() ? name : place_ + "." + name);
}

GlbValue GlbValue::member(const char* name) const {
    std::optional<GlbValue> found = find(name);
    if (!found) {
        fail(std::string("'") + name + "' is missing");
    }
    return std::move(*found);
}

std::size_t GlbValue::size() const {
    if (!json_->is_array()) {
        fail("a list is expected");
    }
    return json_->size();
}

std::size_t GlbValue::size(const char* name) const {
    const std::optional<GlbValue> list = find(name);
    return list ? list->size() : 0;
}

GlbValue GlbValue::element(std::size_t index) const {
    if (index >= size()) {
        fail("no element " + std::to_string(index) + " among " + std::to_string(size()));
    }
    return {(*json_)[index], *file_, place_ + "[" + std::to_string(index) + "]"};
}

std::size_t GlbValue::whole() const {
    constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
    if (!json_->is_number_unsigned() || json_->get<std::uint64_t>() > most) {
        fail("an integer from 0 to 4294967295 is expected");
    }
    return static_cast<std::size_t>(json_->get<std::uint64_t>());
}

std::size_t GlbValue::whole(const char* name, std::size_t if_absent) const {
    const std::optional<GlbValue> value = find(name);
    return value ? value->whole() : if_absent;
}

double GlbValue::number() const {
    if (!json_->is_number()) {
        fail("a number is expected");
    }
    return json_->get<double>();
}

std::vector<double> GlbValue::numbers(std::size_t count) const {
    if (size() != count) {
        fail(std::to_string(count) + " numbers are expected");
    }
    std::vector<double> values;
    values.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        values.push_back(element(i).number());
    }
    return values;
}

std::string GlbValue::text() const {
    if (!json_->is_string()) {
        fail("a text is expected");
    }
    return json_->get<std::string>();
}

void GlbValue::fail(const std::string& message) const {
    throw input_error(*file_ + ": " + (place_.empty() ? "" : place_ + ": ") + message,
                      {.file = *file_});
}

} // namespace korvel::kit
