#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace korvel::kit {

/// Where an error is, and what can be done about it. Members that do not apply are empty.
struct ErrorDetails {
    std::string file = {};
    int line = 0;                ///< from 1; 0 for none
    std::string value = {};      ///< the text that does not fit
    std::string advice = {};     ///< a sentence for the user
    bool is_closed_pipe = false; ///< nobody reads the output any more
};

/// The exception of the kit. `what()` is a line for the user, which names file, line and value.
class Error : public std::runtime_error {
public:
    enum class Kind {
        input,     ///< what was handed in cannot be used
        output,    ///< an output could not be written, or the system has not enough of something
        cancelled, ///< the operation was stopped through its `Context`
    };

    Error(Kind kind, const std::string& message, ErrorDetails details = {})
        : std::runtime_error(message), kind_(kind), details_(std::move(details)) {}

    Kind kind() const { return kind_; }
    const std::string& file() const { return details_.file; }
    int line() const { return details_.line; }
    const std::string& value() const { return details_.value; }
    const std::string& advice() const { return details_.advice; }
    bool is_closed_pipe() const { return details_.is_closed_pipe; }

private:
    Kind kind_;
    ErrorDetails details_;
};

inline Error input_error(const std::string& message, ErrorDetails details = {}) {
    return {Error::Kind::input, message, std::move(details)};
}

inline Error output_error(const std::string& message, ErrorDetails details = {}) {
    return {Error::Kind::output, message, std::move(details)};
}

} // namespace korvel::kit
