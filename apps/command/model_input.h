#pragma once

#include <string>

#include "apps/command/record.h"
#include "kit/kit.h"

// Body models as input of commands, and their figures in reports.

namespace korvel::command {

/// Throws an input error unless the number is one of `size` things of the file: "--body: '7' is
/// not a body of states.model, they go from 0 to 3".
void check_number(const std::string& option, int number, int size, const std::string& thing,
                  const std::string& file);

/// "28280 vertices, 83016 edges, 55344 faces, volume 1075590865500", the volume of all bodies.
std::string model_figures(const kit::Solids& solids);

/// The same figures, and the number of bodies and the bounds.
Record model_record(const kit::Solids& solids);

/// "x 0 to 10, y -5 to 5, z 1 to 2".
std::string bounds_text(const kit::Solids& solids);

/// Prints how many bodies a model has and its bounds, and notes both as `model`.
void report_bodies(const std::string& name, const kit::Solids& solids);

/// Warns when a model file would put vertices off by more than 10⁻⁵ of the model's extent. `advice`
/// ends the warning, such as "; --unit brings it closer to 0,0".
void warn_of_rounding(const kit::Solids& solids, const std::string& advice = {});

/// Throws an input error when a model file would take the area from a face.
void refuse_collapse(const kit::Solids& solids, const std::string& subject,
                     const std::string& advice);

using kit::colour_text;

/// "welded: 16588 vertices joined, 13012 faces shared, 0 walls split, 120 walls turned".
std::string weld_text(const kit::WeldReport& report);
Record weld_record(const kit::WeldReport& report);

} // namespace korvel::command
