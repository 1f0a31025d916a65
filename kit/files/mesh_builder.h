#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/files/byte_input.h"
#include "kit/files/mesh.h"

namespace korvel::kit {

/// Makes room in a list whose length shows only while the file is read: for what the rest of the
/// file can hold at the rate since the first entry, so that large lists are hardly ever copied. One
/// for each list, or for lists that begin together.
class ListGrowth {
public:
    explicit ListGrowth(const ByteInput& input) : input_(input) {}

    template <class Entry>
    void add(std::vector<Entry>& list, const Entry& entry) {
        if (list.size() == list.capacity()) {
            list.reserve(expected(list.size()));
        }
        list.push_back(entry);
    }

private:
    std::size_t expected(std::size_t present);

    const ByteInput& input_;
    long long first_ = -1; // where the first entry ends
};

/// Adds the faces of a file to its mesh.
class FaceBuilder {
public:
    FaceBuilder(Mesh& mesh, const ByteInput& input) : mesh_(mesh), growth_(input) {}

    void add_corner(std::int32_t point) { growth_.add(mesh_.corners, point); }

    /// Ends the face of the corners that were added since the last one. False if they are fewer
    /// than three: they are dropped.
    bool end_face();

    /// How many faces there are.
    std::size_t count() const {
        return mesh_.face_ends.empty() ? first_ / 3 : mesh_.face_ends.size();
    }

    /// Warns of the faces that were dropped.
    void finish(const ByteInput& input) const;

private:
    Mesh& mesh_;
    ListGrowth growth_;
    std::size_t first_ = 0; // corner of the face
    std::size_t dropped_ = 0;
};

} // namespace korvel::kit
