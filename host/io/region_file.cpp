#include "host/io/region_file.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <memory>
#include <system_error>

#include "host/io/errors.h"

namespace korvel::host {
namespace {

// What the library's reader will do to the coordinates.
class SinglePrecision {
public:
    explicit SinglePrecision(const TextFile& file) : file_(file) {}

    void note(double value, int line) {
        const double held = static_cast<float>(value);
        if (!first_change_ && held != value && value == std::trunc(value)) {
            char numbers[128];
            std::snprintf(numbers, sizeof numbers, "%.0f becomes %.0f", value, held);
            first_change_ = file_.name + ":" + std::to_string(line) + ": " + numbers +
                            ": coordinates are read in single precision";
        }
    }

    std::optional<std::string> first_change() const { return first_change_; }

private:
    const TextFile& file_;
    std::optional<std::string> first_change_;
};

std::optional<std::string> check(const TextFile& file);
int check_points(WordReader& words, SinglePrecision& precision);
int check_lists(WordReader& words, int entries, const char* number, const char* length,
                const char* entry);
void hand_over(const TextFile& file, CCPloy2DRg& out);

} // namespace

bool holds_regions(const TextFile& file) {
    WordReader words(file);
    words.next();
    return words.next().find('.') != std::string_view::npos;
}

std::optional<std::string> read_regions(const TextFile& file, CCPloy2DRg& out) {
    std::optional<std::string> note;
    try {
        note = check(file);
    } catch (const InputError& error) {
        if (holds_regions(file)) {
            throw;
        }
        throw InputError(std::string(error.what()) + " (a polygon-region file begins with the " +
                         "number of points and real coordinates; is this a curve file?)");
    }
    hand_over(file, out);
    return note;
}

namespace {

std::optional<std::string> check(const TextFile& file) {
    WordReader words(file);
    SinglePrecision precision(file);
    const int points = check_points(words, precision);
    if (points > 0) {
        const int rings = check_lists(words, points, "the number of rings",
                                      "the number of points of a ring", "the point of a ring");
        check_lists(words, rings, "the number of regions", "the number of rings of a region",
                    "the ring of a region");
    }
    if (!words.at_end()) {
        const std::string extra = shown(words.next());
        words.fail(extra + " stands after the end of the regions");
    }
    return precision.first_change();
}

int check_points(WordReader& words, SinglePrecision& precision) {
    const int points = words.next_count("the number of points");
    for (int point = 0; point < points; ++point) {
        if (words.at_end()) {
            words.fail("the file ends after " + std::to_string(point) + " of " +
                       std::to_string(points) + " points");
        }
        precision.note(words.next_real("the x of a point"), words.line());
        precision.note(words.next_real("the y of a point"), words.line());
    }
    return points;
}

// Rings are lists of points, regions are lists of rings. Returns the number of lists.
int check_lists(WordReader& words, int entries, const char* number, const char* length,
                const char* entry) {
    const int lists = words.next_count(number);
    for (int list = 0; list < lists; ++list) {
        const int members = words.next_count(length);
        for (int member = 0; member < members; ++member) {
            words.next_index(entry, entries);
        }
    }
    return lists;
}

// The library reads from a stream. A scratch file gives it the very text that was checked, even if
// the user's file was a pipe.
void hand_over(const TextFile& file, CCPloy2DRg& out) {
    const std::unique_ptr<FILE, int (*)(FILE*)> scratch(std::tmpfile(), std::fclose);
    const std::size_t size = file.text.size();
    if (!scratch || std::fwrite(file.text.data(), 1, size, scratch.get()) != size ||
        std::fseek(scratch.get(), 0, SEEK_SET) != 0) {
        throw OutputError("cannot write a temporary file: " +
                          std::generic_category().message(errno));
    }
    out.readpolyrg(scratch.get());
}

} // namespace
} // namespace korvel::host
