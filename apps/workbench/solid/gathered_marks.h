#pragma once

#include <span>

#include "kit/kit.h"

namespace korvel::workbench {

/// What will move of a model, drawn over it: the faces in colours from blue, which stays, to
/// yellow, which moves all the way.
void draw_weights(const kit::Solids& solids, std::span<const int> faces,
                  std::span<const int> vertices, std::span<const double> weights);

/// The edge and the face by which a move is refused, in red in front of everything.
void draw_verdict(const kit::Solids& solids, const kit::Verdict& verdict,
                  const kit::ViewFrame& frame);

/// A rectangle in the view, in front of everything.
void draw_rectangle(const kit::Rectangle& rectangle);

} // namespace korvel::workbench
