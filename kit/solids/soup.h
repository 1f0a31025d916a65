#pragma once

#include <memory>
#include <span>
#include <vector>

#include "kit/base/points.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Faces by their corners, one after another.
class FaceList {
public:
    int size() const { return static_cast<int>(ends_.size()); }

    std::span<const int> operator[](int face) const {
        const auto slot = static_cast<std::size_t>(face);
        const std::size_t first = slot == 0 ? 0 : ends_[slot - 1];
        return {corners_.data() + first, ends_[slot] - first};
    }

    /// Appends a face and returns its number.
    int add(std::span<const int> corners) {
        corners_.insert(corners_.end(), corners.begin(), corners.end());
        ends_.push_back(corners_.size());
        return size() - 1;
    }

    /// The corners of all faces.
    std::vector<int>& corners() { return corners_; }

private:
    std::vector<int> corners_;
    std::vector<std::size_t> ends_;
};

/// Points, faces and bodies as bare numbers: a fraction of the memory of a model.
struct Soup {
    std::vector<Point3> points;
    FaceList faces;
    std::vector<std::vector<int>> bodies; ///< the faces of each
};

/// Appends vertices, faces and bodies of a model, or of other soup.
void append(const TMOD3D& model, Soup& soup);
void append(const Soup& other, Soup& soup);

/// A model of vertices, faces and bodies, with nothing else: its faces have no edges yet.
std::unique_ptr<TMOD3D> model_of(const Soup& soup);

} // namespace korvel::kit
