#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "kit/base/context.h"

namespace korvel::kit {

/// The bytes of a file, which are read from a stream in blocks: lines of a text, or records.
class ByteInput {
public:
    /// Takes the stream from its current position. `name` is that in messages.
    ByteInput(FILE* stream, std::string name, const Context& context);

    const std::string& name() const { return name_; }
    const Context& context() const { return context_; }

    /// How many bytes are still to come at most: all of a regular file; a fixed number for a pipe,
    /// to which a count in a header is believed.
    std::size_t most_left() const;

    /// Whether the number of bytes left is known, as it is not for a pipe.
    bool knows_size() const { return size_ >= 0; }

    /// Up to `count` of the bytes that come next, without taking them; fewer at the end only.
    std::string_view peek(std::size_t count);

    /// Takes bytes; throws "the file ends within …" with `what` if there are not so many.
    void read(void* to, std::size_t count, const char* what);

    bool at_end() { return peek(1).empty(); }

    /// The next line, without its end (LF, CR LF or CR), valid until the next call; `is_line`
    /// becomes false at the end of the file. UTF-8's byte order mark is left out. Throws for lines
    /// beyond 16 MiB and for a NUL byte.
    std::string_view next_line(bool& is_line);

    /// Of the line that was returned last, from 1.
    int line() const { return line_; }

    /// How many bytes were taken.
    long long position() const;

    /// Throws an input error "FILE:LINE: message" once a line was read, and as the other one
    /// before. `value` is what does not fit, which the message quotes.
    [[noreturn]] void fail(const std::string& message, std::string_view value = {}) const;

    /// Throws an input error "FILE: message at byte N", the next one.
    [[noreturn]] void fail_at_byte(const std::string& message) const;

private:
    bool read_block(std::size_t least);

    FILE* stream_;
    std::string name_;
    const Context& context_;
    long long size_ = -1; // of what comes from the stream; −1 if it is not known
    std::vector<char> block_;
    std::size_t next_ = 0;
    std::size_t end_ = 0;
    long long from_stream_ = 0; // up to the end of the block
    int line_ = 0;
};

} // namespace korvel::kit
