#pragma once

#include "kit/kit.h"

namespace korvel::workbench {

class SolidModel;

/// A move by coordinates of the model.
struct TypedMove {
    bool is_body = false;
    int number = 0;        ///< of the vertex or the body
    int depth = 0;         ///< vertices up to so many edges away move along
    bool is_place = false; ///< `xyz` is where the vertex, or the middle of the body's box, goes
    kit::Point3 xyz = {};
};

/// Makes the move as a step, or reports by `SolidModel::refused` why it is not legal. Along x and y
/// it fades out around a vertex, along z all move alike (`kit::SolidsEditor::move`).
void make_typed_move(SolidModel& solids, const TypedMove& move);

} // namespace korvel::workbench
