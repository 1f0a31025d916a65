#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "kit/base/points.h"
#include "kit/solids/inside.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

class Solids;

/// Finds the bodies that contain many points: `Solids::body_at` with an index of the faces for each
/// direction of its rays, built when it is first needed, in n log n. Valid as long as the solids
/// exist and are not changed. Several threads may ask at once.
class BodyLocator {
public:
    explicit BodyLocator(const Solids& solids);
    ~BodyLocator();
    BodyLocator(const BodyLocator&) = delete;
    BodyLocator& operator=(const BodyLocator&) = delete;

    /// What `Solids::body_at` returns. Usually takes as long as three searches of a tree.
    std::optional<int> body_at(const Point3& point) const;

private:
    class View;

    const View& view(int ray) const;
    int first_body_met(int ray, const Point3& point) const;

    const TMOD3D* model_;
    std::vector<int> bodies_; // that list the first face, the second, …, as often as they do
    std::vector<std::size_t> ends_; // of each face in `bodies_`
    mutable std::array<std::once_flag, most_rays> is_built_;
    mutable std::array<std::unique_ptr<View>, most_rays> views_;
};

} // namespace korvel::kit
