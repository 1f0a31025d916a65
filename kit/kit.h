#pragma once

// The one header of the kit that a host includes.

#include "kit/base/colour.h"
#include "kit/base/context.h"
#include "kit/base/error.h"
#include "kit/base/export.h"
#include "kit/base/points.h"
#include "kit/base/rectangle.h"
#include "kit/files/curve_file.h"
#include "kit/files/file_kind.h"
#include "kit/files/findings.h"
#include "kit/files/model_file.h"
#include "kit/files/output_file.h"
#include "kit/files/region_file.h"
#include "kit/files/section_file.h"
#include "kit/files/triangle_file.h"
#include "kit/maps/cap.h"
#include "kit/maps/coverage.h"
#include "kit/maps/find_regions.h"
#include "kit/maps/map.h"
#include "kit/maps/network.h"
#include "kit/maps/region_colours.h"
#include "kit/maps/region_sets.h"
#include "kit/maps/triangulation.h"
#include "kit/pictures/flat_picture.h"
#include "kit/pictures/gl_view.h"
#include "kit/pictures/label_writer.h"
#include "kit/pictures/model_picture.h"
#include "kit/pictures/model_view.h"
#include "kit/pictures/picture_fit.h"
#include "kit/pictures/picture_size.h"
#include "kit/pictures/section_picture.h"
#include "kit/pictures/view_frame.h"
#include "kit/solids/file_check.h"
#include "kit/solids/inside.h"
#include "kit/solids/join.h"
#include "kit/solids/model_check.h"
#include "kit/solids/moving.h"
#include "kit/solids/pick.h"
#include "kit/solids/section_cut.h"
#include "kit/solids/surface.h"
#include "korvel/module/korvel.h"

// Parts that the kit can be built without.
#if defined(KORVEL_HAS_CAIRO)
#include "kit/pictures/picture_canvas.h"
#include "kit/pictures/picture_files.h"
#endif
#if defined(KORVEL_HAS_EGL)
#include "kit/pictures/offscreen_renderer.h"
#include "kit/pictures/view_files.h"
#endif
