#include "kit/files/json_input.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <system_error>
#include <utility>

#include "kit/base/error.h"

namespace korvel::kit {
namespace {

constexpr std::size_t block_size = 1U << 16U;

} // namespace

JsonInput::JsonInput(FILE* stream, std::string name, long long size, const Context& context)
    : stream_(stream), name_(std::move(name)), size_(size), context_(context), block_(block_size) {
    next_ = end_ = block_.data();
}

bool JsonInput::read_block() {
    const auto before = static_cast<std::size_t>(end_ - block_.data());
    follows_line_end_ = before > 0 ? end_[-1] == '\n' : follows_line_end_;
    taken_ += static_cast<long long>(before);
    const std::size_t got = std::fread(block_.data(), 1, block_.size(), stream_);
    if (got < block_.size() && std::ferror(stream_) != 0) {
        throw input_error(name_ + ": cannot be read: " + std::generic_category().message(errno),
                          {.file = name_});
    }
    next_ = block_.data();
    end_ = next_ + got;
    if (taken_ == 0) {
        check_encoding();
    }
    if (size_ > 0) {
        context_.report("reading features", std::min(taken_, size_), size_);
    } else {
        context_.stop_if_requested("reading features");
    }
    has_ended_ = got == 0;
    return got > 0;
}

void JsonInput::check_encoding() const {
    const std::string_view start(next_, std::min<std::size_t>(4, end_ - next_));
    if (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF") ||
        (start.size() > 1 && (start[0] == '\0') != (start[1] == '\0'))) {
        fail("the text is UTF-16, where GeoJSON is UTF-8");
    }
    if (start.starts_with("\x1F\x8B")) {
        fail("the file is compressed by gzip, not GeoJSON: expand it first");
    }
    if (start == "PK\x03\x04") {
        fail("the file is a zip archive, not GeoJSON");
    }
}

int JsonInput::line() const {
    const bool is_after_line_end = next_ == block_.data() ? follows_line_end_ : next_[-1] == '\n';
    return line_ - (is_after_line_end ? 1 : 0);
}

std::string JsonInput::rest_of_word() const {
    const char* const limit = next_ + std::min<std::ptrdiff_t>(end_ - next_, 40);
    return {next_, std::find_if(next_, limit, [](unsigned char c) {
                return std::isalnum(c) == 0 && c != '.' && c != '+' && c != '-';
            })};
}

void JsonInput::fail(const std::string& message, std::string_view value) const {
    const int line = this->line();
    throw input_error(name_ + ":" + std::to_string(line) + ": " + message,
                      {.file = name_, .line = line, .value = std::string(value)});
}

} // namespace korvel::kit
