// OFF, as text: points and faces with their colours.

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "kit/files/byte_input.h"
#include "kit/files/mesh_builder.h"
#include "kit/files/mesh_readers.h"
#include "kit/files/text_file.h"
#include "kit/files/text_scan.h"

namespace korvel::kit {
namespace {

/// The colours of points or faces. Files have them up to 255 or up to 1, with an opacity or not,
/// which shows only when all of them are known.
class OffColours {
public:
    /// Three or four channels; with any other number it has no colour.
    void add(const std::vector<double>& channels);
    std::vector<Colour> take();

private:
    std::vector<Colour> up_to_255_; // white without one; empty as long as none has any
    std::vector<Colour> up_to_1_;
    std::size_t count_ = 0;
    double most_ = 0;
};

class OffReader {
public:
    explicit OffReader(ByteInput& input) : input_(input), scan_(input, &mesh_) {}
    Mesh read();

private:
    void read_kind();
    std::size_t read_count(const char* what, std::size_t least_bytes);
    void read_points(std::size_t count);
    void read_faces(std::size_t count);
    void read_rest();

    ByteInput& input_;
    Mesh mesh_;
    TextScan scan_;
    bool have_normals_ = false; // the points
    bool have_colours_ = false;
    bool have_textures_ = false;
    std::vector<double> rest_; // numbers of a line
};

} // namespace

Mesh read_off(ByteInput& input) {
    return OffReader(input).read();
}

namespace {

constexpr std::size_t least_off_point = 6; // bytes: three digits, each with what follows it
constexpr std::size_t least_off_face = 2;  // the count of its corners

Mesh OffReader::read() {
    scan_.cross_lines();
    read_kind();
    const std::size_t points = read_count("the number of points", least_off_point);
    const std::size_t faces = read_count("the number of faces", least_off_face);
    read_rest(); // the number of edges, which may be missing or wrong
    if (rest_.size() > 1) {
        input_.fail("more than the numbers of points, faces and edges");
    }
    read_points(points);
    read_faces(faces);
    if (scan_.next_line()) {
        const std::string_view word = scan_.word();
        input_.fail(quoted(word) + " follows the last face", word);
    }
    mesh_.parts_are_bodies = false; // which the format does not keep apart
    return std::move(mesh_);
}

// The first word is "OFF" with letters before it, which name what points have.
void OffReader::read_kind() {
    const std::string_view whole = scan_.need_word("'OFF'");
    std::string_view word = whole;
    const auto take = [&](std::string_view letters) {
        const bool has = word.starts_with(letters);
        word.remove_prefix(has ? letters.size() : 0);
        return has;
    };
    have_textures_ = take("ST");
    have_colours_ = take("C");
    have_normals_ = take("N");
    if (word == "4OFF" || word == "nOFF" || word == "4nOFF") {
        input_.fail(quoted(whole) + ", points of other than three dimensions, is not read", whole);
    }
    if (word != "OFF") {
        input_.fail(quoted(whole) + ", where 'OFF' is expected", whole);
    }
}

std::size_t OffReader::read_count(const char* what, std::size_t least_bytes) {
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    const auto count = static_cast<std::size_t>(scan_.integer(what, 0, most));
    const std::size_t room = (scan_.most_left() + 1) / least_bytes;
    if (count > room) {
        input_.fail(std::string(what) + " is " + std::to_string(count) +
                    ", where the file has room for " + std::to_string(room));
    }
    return count;
}

void OffReader::read_points(std::size_t count) {
    const std::size_t others = (have_normals_ ? 3U : 0U) + (have_textures_ ? 2U : 0U);
    OffColours colours;
    mesh_.points.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        scan_.next_line();
        const double x = scan_.number("the x of a point");
        const double y = scan_.number("the y of a point");
        mesh_.points.push_back({x, y, scan_.number("the z of a point")});
        if (scan_.at_line_end() && !have_colours_ && others == 0) {
            continue;
        }
        read_rest();
        const std::size_t channels = rest_.size() - std::min(others, rest_.size());
        if (rest_.size() < others ||
            (have_colours_ ? channels != 3 && channels != 4 : channels != 0)) {
            input_.fail(std::to_string(rest_.size()) +
                        " numbers after the coordinates of a point do not fit the first word");
        }
        if (have_colours_) {
            const std::size_t before = have_normals_ ? 3 : 0;
            rest_.erase(rest_.begin(), rest_.begin() + static_cast<std::ptrdiff_t>(before));
            rest_.resize(channels);
            colours.add(rest_);
        }
    }
    mesh_.point_colours = colours.take();
}

void OffReader::read_faces(std::size_t count) {
    OffColours colours;
    FaceBuilder faces(mesh_, input_);
    for (std::size_t i = 0; i < count; ++i) {
        scan_.next_line();
        const auto most = static_cast<std::int64_t>(scan_.most_left() + 1);
        for (auto left = scan_.integer("the number of corners", 0, most); left > 0; --left) {
            faces.add_corner(scan_.index("the index of a point", mesh_.points.size()));
        }
        read_rest();
        if (faces.end_face()) {
            colours.add(rest_);
        }
    }
    mesh_.face_colours = colours.take();
    faces.finish(input_);
}

// The numbers that are left in the line.
void OffReader::read_rest() {
    rest_.clear();
    while (!scan_.at_line_end()) {
        rest_.push_back(scan_.number("a number, or the end of the line"));
    }
}

void OffColours::add(const std::vector<double>& channels) {
    constexpr Colour white = {255, 255, 255};
    const bool has = channels.size() == 3 || channels.size() == 4;
    if (has && up_to_1_.empty()) {
        up_to_255_.assign(count_, white);
        up_to_1_.assign(count_, white);
    }
    ++count_;
    if (!has && up_to_1_.empty()) {
        return;
    }
    const auto colour = [&](double scale) {
        const auto channel = [&](std::size_t i) {
            const double value = std::round(channels[i] * scale);
            return static_cast<unsigned char>(std::clamp(value, 0.0, 255.0));
        };
        return has ? Colour{channel(0), channel(1), channel(2)} : white;
    };
    up_to_255_.push_back(colour(1));
    up_to_1_.push_back(colour(255));
    most_ = has ? std::max(most_, *std::max_element(channels.begin(), channels.end())) : most_;
}

std::vector<Colour> OffColours::take() {
    return std::move(most_ > 1 ? up_to_255_ : up_to_1_);
}

} // namespace
} // namespace korvel::kit
