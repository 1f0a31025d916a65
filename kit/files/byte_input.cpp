#include "kit/files/byte_input.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "kit/base/error.h"
#include "kit/base/system_files.h"

namespace korvel::kit {
namespace {

constexpr std::size_t block_size = 1U << 18U;
constexpr std::size_t longest_line = 1U << 24U;

/// What a count in a header may ask for when the size of the input is not known.
constexpr std::size_t most_from_pipe = 1U << 28U;

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

} // namespace

ByteInput::ByteInput(FILE* stream, std::string name, const Context& context)
    : stream_(stream), name_(std::move(name)), context_(context), size_(bytes_left(stream)),
      block_(block_size) {}

std::size_t ByteInput::most_left() const {
    const std::size_t buffered = end_ - next_;
    if (size_ < 0) {
        return buffered + most_from_pipe;
    }
    return buffered + static_cast<std::size_t>(std::max(0LL, size_ - from_stream_));
}

std::string_view ByteInput::peek(std::size_t count) {
    if (end_ - next_ < count) {
        read_block(count);
    }
    return {block_.data() + next_, std::min(count, end_ - next_)};
}

void ByteInput::read(void* to, std::size_t count, const char* what) {
    auto* target = static_cast<char*>(to);
    while (count > 0) {
        if (next_ == end_ && !read_block(1)) {
            fail_at_byte(std::string("the file ends within ") + what);
        }
        const std::size_t part = std::min(count, end_ - next_);
        std::memcpy(target, block_.data() + next_, part);
        target += part;
        next_ += part;
        count -= part;
    }
}

std::string_view ByteInput::next_line(bool& is_line) {
    std::size_t length = 0;
    for (;;) {
        const char* const start = block_.data() + next_;
        const char* const end = block_.data() + end_;
        const char* stop = start + length;
        // Nearly all bytes pass the first comparison.
        while (stop != end && (static_cast<unsigned char>(*stop) > '\r' ||
                               (*stop != '\n' && *stop != '\r' && *stop != '\0'))) {
            ++stop;
        }
        length = static_cast<std::size_t>(stop - start);
        // A CR LF may continue in the next block.
        if ((stop == end || (*stop == '\r' && stop + 1 == end)) && read_block(length + 2)) {
            if (length > longest_line) {
                ++line_;
                fail("a line of more than 16 MiB");
            }
            continue;
        }
        is_line = stop != end || length > 0;
        line_ += is_line ? 1 : 0;
        if (stop != end && *stop == '\0') {
            fail("a byte of value 0, which no text contains");
        }
        const bool has_two = stop + 1 < end && *stop == '\r' && stop[1] == '\n';
        next_ += std::min(length + (has_two ? 2 : 1), end_ - next_);
        const std::string_view line(start, length);
        const bool has_mark = line_ == 1 && line.starts_with(byte_order_mark);
        return has_mark ? line.substr(byte_order_mark.size()) : line;
    }
}

// Whether there are more bytes than before. What is left moves to the front of the block, which
// grows if it is to hold more.
bool ByteInput::read_block(std::size_t least) {
    const std::size_t kept = end_ - next_;
    std::memmove(block_.data(), block_.data() + next_, kept);
    next_ = 0;
    end_ = kept;
    if (least > block_.size()) {
        block_.resize(std::max(least, 2 * block_.size()));
    }
    if (size_ > 0) {
        context_.report("reading a mesh", std::min(from_stream_, size_), size_);
    } else {
        context_.stop_if_requested("reading a mesh");
    }
    // More than is asked for only when the stream has it.
    do {
        const std::size_t got = std::fread(block_.data() + end_, 1, block_.size() - end_, stream_);
        if (got == 0) {
            if (std::ferror(stream_) != 0) {
                throw input_error(name_ +
                                      ": cannot be read: " + std::generic_category().message(errno),
                                  {.file = name_});
            }
            break;
        }
        end_ += got;
        from_stream_ += static_cast<long long>(got);
    } while (end_ < least);
    return end_ > kept;
}

long long ByteInput::position() const {
    return from_stream_ - static_cast<long long>(end_ - next_);
}

void ByteInput::fail(const std::string& message, std::string_view value) const {
    if (line_ == 0) {
        fail_at_byte(message);
    }
    throw input_error(name_ + ":" + std::to_string(line_) + ": " + message,
                      {.file = name_, .line = line_, .value = std::string(value)});
}

void ByteInput::fail_at_byte(const std::string& message) const {
    throw input_error(name_ + ": " + message + " at byte " + std::to_string(position()),
                      {.file = name_});
}

} // namespace korvel::kit
