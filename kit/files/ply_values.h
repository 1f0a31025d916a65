#pragma once

#include <cstddef>
#include <string>

#include "kit/files/byte_input.h"
#include "kit/files/ply_header.h"
#include "kit/files/text_scan.h"

namespace korvel::kit {

/// The numbers after the header of a PLY file, as text or as bytes. `what` names them in messages.
class PlyValues {
public:
    PlyValues(ByteInput& input, const PlyHeader& header);

    /// The next number, which double precision holds for every type. Of bytes also one that is not
    /// finite.
    double next(PlyType type, const char* what);

    /// The length of a list, whose entries the file has room for.
    std::size_t next_length(const PlyProperty& list);

    /// Leaves out a property, whatever it is.
    void skip(const PlyProperty& property);

    /// Throws unless the file has room for the rows of an element.
    void need_room(const PlyElement& element) const;

    /// Throws for what follows the last element of a text, warns of the bytes that do.
    void finish();

    [[noreturn]] void fail(const std::string& message) const;

private:
    std::size_t most_left() const;
    std::size_t least_size(PlyType type) const { return is_text_ ? 2 : size_of(type); }

    ByteInput& input_;
    TextScan scan_;
    bool is_text_;
    std::endian order_;
};

} // namespace korvel::kit
