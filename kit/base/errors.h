#pragma once

#include <stdexcept>

namespace korvel::kit {

/// Something that the user handed in cannot be used. The message names the file, the line and the
/// value.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// An output could not be written. The message names the file and the system's reason.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace korvel::kit
