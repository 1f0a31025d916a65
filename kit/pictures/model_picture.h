#pragma once

#include <span>

#include "kit/pictures/view_frame.h"
#include "kit/solids/outline_edges.h"
#include "kit/solids/pick.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

// What is drawn into a picture that `begin_view` has begun.

/// A model whose view is current: its faces and, if wanted, all its edges and its wrap cuboid. The
/// light comes from the viewer, also on faces that are seen from behind, through the gap of an open
/// body. Takes memory for some thousand faces.
void draw_model(const TMOD3D& shown, bool with_edges, bool with_box);

/// Over a drawn model its outlines (`outline_edges` with the angle), thin and dark, where no face
/// hides them; those of bodies that are small as seen are paler. Blending is off afterwards. Of the
/// upright edges of a finely divided wall those that would be a few pixels apart are left out.
/// Covers the edges if `draw_model` drew them. The relations must be current.
void draw_outlines(const TMOD3D& model, const ViewFrame& frame, bool with_edges,
                   double angle = smooth_angle);

/// The same with edges that the caller keeps from one picture to the next.
void draw_outlines(const TMOD3D& model, const ViewFrame& frame, bool with_edges,
                   std::span<const int> edges);

/// Marks over a drawn model what was picked: the face yellow where it is seen, and in front of
/// everything the edge red, the vertex as a blue dot and the point as a smaller white one.
void draw_pick(const TMOD3D& model, const Pick& pick, const ViewFrame& frame);

} // namespace korvel::kit
