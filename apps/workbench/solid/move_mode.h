#pragma once

#include <array>

#include <QtGlobal>

#include "apps/workbench/document/solid_model.h"
#include "apps/workbench/solid/solid_tool.h"

namespace korvel::workbench {

/// How what is gathered follows the mouse: the moves of `kit::SolidsEditor`.
enum class MoveMode { fading, together, onto, in_depth, in_depth_weighted };

struct MoveModeText {
    MoveMode mode;
    const char* text;
    const char* tip;
};

inline constexpr std::array move_modes = {
    MoveModeText{MoveMode::fading, QT_TRANSLATE_NOOP("SolidView", "&Fading Out"),
                 QT_TRANSLATE_NOOP("SolidView",
                                   "The vertex follows the mouse, those around it less and less")},
    MoveModeText{MoveMode::together, QT_TRANSLATE_NOOP("SolidView", "All &Together"),
                 QT_TRANSLATE_NOOP("SolidView", "All gathered vertices follow the mouse alike")},
    MoveModeText{MoveMode::onto, QT_TRANSLATE_NOOP("SolidView", "Onto &One Place"),
                 QT_TRANSLATE_NOOP("SolidView",
                                   "All gathered vertices come to the place of the mouse; their "
                                   "depths stay")},
    MoveModeText{
        MoveMode::in_depth, QT_TRANSLATE_NOOP("SolidView", "In &Depth"),
        QT_TRANSLATE_NOOP("SolidView", "Mouse up moves all towards the viewer, mouse down away")},
    MoveModeText{MoveMode::in_depth_weighted,
                 QT_TRANSLATE_NOOP("SolidView", "In Depth with &Weights"),
                 QT_TRANSLATE_NOOP("SolidView",
                                   "As in depth; the weights are computed as well, as the library "
                                   "does it")},
};

/// The move by a drag from one position of the mouse to another. `start` is where the vertex is in
/// the view that follows the mouse.
SolidChange move_by_drag(MoveMode mode, const kit::Point3& start, const SolidMouse& from,
                         const SolidMouse& to);

} // namespace korvel::workbench
