#pragma once

#include <string>
#include <vector>

#include <QString>

#include "kit/kit.h"

namespace korvel::workbench {

/// A reference system to choose.
struct SystemChoice {
    std::string reference; ///< see `kit::Placement`
    std::string name;      ///< for people

    bool operator==(const SystemChoice& other) const = default;
};

/// Systems into which coordinates of a system are usually transformed: degrees, the UTM zone of
/// what is no wider than 12 degrees, the one of maps in browsers, and one that keeps areas.
/// `bounds` are those of the coordinates. Nothing for a system that is not known, and where there
/// is no PROJ.
std::vector<SystemChoice> usual_systems(const std::string& reference, const kit::Rectangle& bounds);

/// A short name for people, also of what PROJ cannot name.
QString shown_reference(const std::string& reference);

} // namespace korvel::workbench
