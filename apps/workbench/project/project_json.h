#pragma once

#include <string>

#include "apps/workbench/project/project.h"

namespace korvel::workbench {

/// Whether the coordinates of the curves are in the user's units in their file, or in steps where
/// the grid does not return to the same step.
enum class CurveUnits { user, steps };

/// What project.json states.
std::string project_json(const Project& project, CurveUnits units);

/// What is stated of the curves.
struct CurvesFacts {
    kit::Placement placement = {};
    CurveUnits units = CurveUnits::user;
};

/// Takes it over, except for curves and mesh. `name` is that of the file in messages. Throws a
/// kit::Error.
CurvesFacts read_project_json(const std::string& json, const std::string& name, Project& project);

} // namespace korvel::workbench
