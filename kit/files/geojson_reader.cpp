#include "kit/files/geojson_reader.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "kit/files/geojson_parser.h"
#include "kit/files/json_input.h"
#include "kit/files/text_file.h"

namespace korvel::kit {
namespace {

using Json = nlohmann::json;

/// Passes the events of a text on. False stops the reading.
class JsonEvents {
public:
    JsonEvents(JsonInput& input, GeoJsonParser& parser) : input_(input), parser_(parser) {}

    // The names are those that the library calls.
    // NOLINTBEGIN(readability-identifier-naming)
    bool null() { return value({}); }
    bool boolean(bool is_true) { return value(is_true); }
    bool number_integer(Json::number_integer_t number);
    bool number_unsigned(Json::number_unsigned_t number);
    bool number_float(double number, const Json::string_t& digits);
    bool string(Json::string_t& text);
    bool binary(Json::binary_t& bytes);
    bool start_object(std::size_t size);
    bool key(Json::string_t& key);
    bool end_object();
    bool start_array(std::size_t size);
    bool end_array();
    bool parse_error(std::size_t position, const std::string& token, const Json::exception& error);
    // NOLINTEND(readability-identifier-naming)

private:
    bool value(FieldValue value) {
        parser_.value(std::move(value));
        return true;
    }

    JsonInput& input_;
    GeoJsonParser& parser_;
};

/// The bytes of an input, for the library.
class JsonBytes {
public:
    // NOLINTBEGIN(readability-identifier-naming)
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = char;
    // NOLINTEND(readability-identifier-naming)

    explicit JsonBytes(JsonInput* input) : input_(input) {}
    char operator*() const { return input_->current(); }
    JsonBytes& operator++() {
        input_->advance();
        return *this;
    }
    bool operator==(const JsonBytes& end) const { return input_ == end.input_ || input_->at_end(); }

private:
    JsonInput* input_; // null for the end
};

std::string last_word(const std::string& token);
std::string reason_of(const Json::exception& error);

} // namespace

std::optional<Features> read_geojson(FILE* stream, const std::string& name, long long size,
                                     const Context& context) {
    JsonInput input(stream, name, size, context);
    Features features;
    GeoJsonParser parser(input, features);
    JsonEvents events(input, parser);
    if (input.at_end()) {
        input.fail("the file is empty, where GeoJSON is expected");
    }
    if (!Json::sax_parse(JsonBytes(&input), JsonBytes(nullptr), &events)) {
        return {};
    }
    parser.finish();
    return features;
}

namespace {

bool JsonEvents::number_integer(Json::number_integer_t number) {
    parser_.integer(number);
    return true;
}

bool JsonEvents::number_unsigned(Json::number_unsigned_t number) {
    constexpr auto largest = std::numeric_limits<std::int64_t>::max();
    if (number > static_cast<Json::number_unsigned_t>(largest)) {
        parser_.number(static_cast<double>(number));
    } else {
        parser_.integer(static_cast<std::int64_t>(number));
    }
    return true;
}

bool JsonEvents::number_float(double number, const Json::string_t& /*digits*/) {
    parser_.number(number);
    return true;
}

bool JsonEvents::string(Json::string_t& text) {
    parser_.value(std::move(text));
    return !parser_.is_topology();
}

// Not in JSON, but in the binary forms that the library reads.
bool JsonEvents::binary(Json::binary_t& /*bytes*/) {
    return false;
}

bool JsonEvents::start_object(std::size_t /*size*/) {
    parser_.start_object();
    return true;
}

bool JsonEvents::key(Json::string_t& key) {
    parser_.key(key);
    return true;
}

bool JsonEvents::end_object() {
    parser_.end_object();
    return true;
}

bool JsonEvents::start_array(std::size_t /*size*/) {
    parser_.start_array();
    return true;
}

bool JsonEvents::end_array() {
    parser_.end_array();
    return true;
}

bool JsonEvents::parse_error(std::size_t /*position*/, const std::string& token,
                             const Json::exception& error) {
    constexpr int out_of_range = 406;
    if (error.id == out_of_range) {
        input_.fail(kit::quoted(token) + " is too large for a number in double precision", token);
    }
    if (input_.has_ended()) {
        input_.fail("the file ends where GeoJSON goes on");
    }
    const std::string reason = reason_of(error);
    if (reason.starts_with("invalid string")) {
        input_.fail("no valid JSON: " + reason, token);
    }
    const std::string word = last_word(token) + input_.rest_of_word();
    input_.fail("no valid JSON: " + reason + " at " + kit::quoted(word), word);
}

// The library's token begins after the last number or string, and has <U+000A> for a line end.
std::string last_word(const std::string& token) {
    const std::size_t between = token.find_last_of(" ,:[]{}>", token.size() - 2);
    return token.substr(between == std::string::npos || token.size() < 2 ? 0 : between + 1);
}

// The library's message, "[json.exception.parse_error.101] parse error at line 1, column 2: syntax
// error while parsing value - invalid literal; last read: 'N'", without place and token.
std::string reason_of(const Json::exception& error) {
    std::string_view reason = error.what();
    const std::size_t dash = reason.find(" - ");
    reason.remove_prefix(dash == std::string_view::npos ? 0 : dash + 3);
    return std::string(reason.substr(0, reason.find("; ")));
}

} // namespace
} // namespace korvel::kit
