#pragma once

#include <QString>

#include "kit/kit.h"

namespace korvel::workbench {

/// What was picked, with numbers and coordinates: in one line, and in one line for each of body,
/// face, edge, vertex and point.
QString pick_line(const kit::Solids& solids, const kit::Pick& pick);
QString pick_report(const kit::Solids& solids, const kit::Pick& pick);

/// "12.5, −3, 40" as the user types it.
QString point_text(const kit::Point3& point);

} // namespace korvel::workbench
