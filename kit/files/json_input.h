#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "kit/base/context.h"

namespace korvel::kit {

/// The bytes of a JSON text, which are read from a stream in blocks.
class JsonInput {
public:
    /// `name` is that in messages. `size` is the number of bytes for the progress; 0 if it is not
    /// known.
    JsonInput(FILE* stream, std::string name, long long size, const Context& context);

    /// Whether no byte is left. Throws an input error when the stream cannot be read, and for bytes
    /// that are UTF-16 or compressed.
    bool at_end() { return next_ == end_ && !read_block(); }

    /// The next byte, after `at_end`.
    char current() const { return *next_; }
    void advance() {
        line_ += *next_ == '\n' ? 1 : 0;
        ++next_;
    }

    /// Whether a byte was asked for after the last one.
    bool has_ended() const { return has_ended_; }

    /// Of the last byte that was taken, from 1.
    int line() const;

    /// The letters, digits and signs that come next, without taking them.
    std::string rest_of_word() const;

    /// Throws an input error with "FILE:LINE: message".
    [[noreturn]] void fail(const std::string& message, std::string_view value = {}) const;

private:
    bool read_block();
    void check_encoding() const;

    FILE* stream_;
    std::string name_;
    long long size_;
    const Context& context_;
    std::vector<char> block_;
    const char* next_ = nullptr;
    const char* end_ = nullptr;
    long long taken_ = 0; // of the blocks before
    int line_ = 1;
    bool follows_line_end_ = false; // the block does
    bool has_ended_ = false;
};

} // namespace korvel::kit
