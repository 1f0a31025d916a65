#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "kit/files/byte_input.h"

namespace korvel::kit {

struct Mesh;

/// The words and numbers of a text, line after line. `what` names the expected value in messages:
/// "the x of a point".
class TextScan {
public:
    /// `commented` is what the comments of the text may mark (see mesh_mark.h); without it a `#` is
    /// part of a word as any other character.
    explicit TextScan(ByteInput& input, Mesh* commented = nullptr)
        : input_(input), commented_(commented) {}

    /// From here on a number that the line lacks is taken from the next one.
    void cross_lines() { crosses_lines_ = true; }

    /// Goes on to the next line that contains a word, whatever is left of this one. False at the
    /// end of the file.
    bool next_line();

    bool at_line_end();

    /// The next word of the line, empty at its end; valid until the next line is read.
    std::string_view word();

    /// What is left of the line, without white space at both ends.
    std::string_view rest();

    /// A word that must be there.
    std::string_view need_word(const char* what);

    /// A finite number in double precision.
    double number(const char* what);

    /// An integer from `least` to `most`.
    std::int64_t integer(const char* what, std::int64_t least, std::int64_t most);

    /// An index into a list of `size` entries.
    std::int32_t index(const char* what, std::size_t size);

    /// Bytes that are still to come at most, with those of the line.
    std::size_t most_left() const {
        return input_.most_left() + static_cast<std::size_t>(end_ - next_);
    }

    ByteInput& input() const { return input_; }

private:
    ByteInput& input_;
    Mesh* commented_;
    const char* next_ = nullptr; // of the line
    const char* end_ = nullptr;
    bool crosses_lines_ = false;
};

/// Whether a word is another one, which has small letters, but for capital letters.
bool is_word(std::string_view word, std::string_view small_letters);

} // namespace korvel::kit
