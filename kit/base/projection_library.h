#pragma once

#include <memory>
#include <string>

#include "kit/base/projection.h"

namespace korvel::kit {

/// What the module of PROJ implements: see the functions of projection.h. The definitions are not
/// empty.
class ProjectionLibrary {
public:
    ProjectionLibrary() = default;
    virtual ~ProjectionLibrary() = default;
    ProjectionLibrary(const ProjectionLibrary&) = delete;
    ProjectionLibrary& operator=(const ProjectionLibrary&) = delete;

    virtual std::shared_ptr<const MapProjection> projection(const std::string& from,
                                                            const std::string& to) const = 0;
    virtual bool is_geographic(const std::string& reference) const = 0;
    virtual std::string short_reference(const std::string& definition) const = 0;
    virtual std::string name(const std::string& reference) const = 0;

    /// The datum of a system as parameters of PROJ: "+datum=WGS84", "+ellps=bessel", …
    virtual std::string datum(const std::string& reference) const = 0;
};

} // namespace korvel::kit
