#include "kit/files/ply_header.h"

#include <limits>
#include <string_view>
#include <utility>

#include "kit/files/mesh_mark.h"
#include "kit/files/text_file.h"
#include "kit/files/text_scan.h"

namespace korvel::kit {
namespace {

/// Reads the lines of a header.
class PlyHeaderReader {
public:
    PlyHeaderReader(ByteInput& input, Mesh& mesh) : input_(input), scan_(input), mesh_(mesh) {}
    PlyHeader read();

private:
    void read_format();
    void read_element();
    void read_property();
    PlyType read_type(bool is_of_count);

    ByteInput& input_;
    TextScan scan_;
    Mesh& mesh_;
    PlyHeader header_;
    bool has_format_ = false;
};

std::optional<PlyType> ply_type(std::string_view word);

} // namespace

PlyHeader read_ply_header(ByteInput& input, Mesh& mesh) {
    return PlyHeaderReader(input, mesh).read();
}

namespace {

PlyHeader PlyHeaderReader::read() {
    if (input_.peek(3) != "ply") {
        input_.fail_at_byte("no PLY, which begins with 'ply',");
    }
    scan_.next_line();
    for (;;) {
        if (!scan_.next_line()) {
            input_.fail("the file ends where 'end_header' is expected");
        }
        const std::string_view word = scan_.word();
        if (word == "end_header") {
            break;
        }
        if (word == "comment") {
            take_mesh_mark(scan_.rest(), mesh_);
        } else if (word == "format") {
            read_format();
        } else if (word == "element") {
            read_element();
        } else if (word == "property") {
            read_property();
        } else if (word != "obj_info") {
            input_.fail(quoted(word) + " is no line of a PLY header", word);
        }
    }
    if (!has_format_) {
        input_.fail("the header has no line 'format'");
    }
    return std::move(header_);
}

void PlyHeaderReader::read_format() {
    const std::string_view word = scan_.need_word("a format");
    if (word != "ascii" && word != "binary_little_endian" && word != "binary_big_endian") {
        input_.fail(quoted(word) + " is no format of PLY", word);
    }
    header_.is_text = word == "ascii";
    header_.order = word == "binary_big_endian" ? std::endian::big : std::endian::little;
    has_format_ = true;
}

void PlyHeaderReader::read_element() {
    PlyElement element;
    element.name = scan_.need_word("the name of an element");
    for (const PlyElement& other : header_.elements) {
        if (other.name == element.name) {
            input_.fail("element " + kit::quoted(element.name) + " comes twice", element.name);
        }
    }
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    element.count = static_cast<std::size_t>(scan_.integer("the number of an element", 0, most));
    header_.elements.push_back(std::move(element));
}

void PlyHeaderReader::read_property() {
    if (header_.elements.empty()) {
        input_.fail("a property before the first element");
    }
    PlyProperty property;
    const std::string_view word = scan_.need_word("the type of a property");
    if (word == "list") {
        property.count_type = read_type(true);
        property.type = read_type(false);
    } else if (const std::optional<PlyType> type = ply_type(word)) {
        property.type = *type;
    } else {
        input_.fail(quoted(word) + " is no type of a property", word);
    }
    property.name = scan_.need_word("the name of a property");
    header_.elements.back().properties.push_back(std::move(property));
}

// Of a list.
PlyType PlyHeaderReader::read_type(bool is_of_count) {
    const std::string_view word = scan_.need_word("the type of a list");
    const std::optional<PlyType> type = ply_type(word);
    if (!type || (is_of_count && !is_integer(*type))) {
        input_.fail(quoted(word) + " is no type of " +
                        (is_of_count ? "the length of a list" : "the entries of a list"),
                    word);
    }
    return *type;
}

std::optional<PlyType> ply_type(std::string_view word) {
    constexpr std::pair<std::string_view, PlyType> types[] = {
        {"char", PlyType::int8},       {"int8", PlyType::int8},       {"uchar", PlyType::uint8},
        {"uint8", PlyType::uint8},     {"short", PlyType::int16},     {"int16", PlyType::int16},
        {"ushort", PlyType::uint16},   {"uint16", PlyType::uint16},   {"int", PlyType::int32},
        {"int32", PlyType::int32},     {"uint", PlyType::uint32},     {"uint32", PlyType::uint32},
        {"float", PlyType::float32},   {"float32", PlyType::float32}, {"double", PlyType::float64},
        {"float64", PlyType::float64},
    };
    for (const auto& [name, type] : types) {
        if (word == name) {
            return type;
        }
    }
    return {};
}

} // namespace
} // namespace korvel::kit
