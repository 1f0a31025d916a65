#pragma once

// The one header that a host includes.

#include "korvel/body/body3d.h"
#include "korvel/body/edit/edit_state.h"
#include "korvel/body/tmod3d.h"
#include "korvel/geometry/cmycolor.h"
#include "korvel/geometry/line3d.h"
#include "korvel/geometry/poly3d.h"
#include "korvel/geometry/poly3d_cplx.h"
#include "korvel/geometry/triutvalinst.h"
#include "korvel/geometry/vert3d.h"
#include "korvel/geometry/view_transform.h"
#include "korvel/platform/check_point.h"
#include "korvel/platform/export.h"
#include "korvel/platform/framework.h"
#include "korvel/platform/version.h"
#include "korvel/polyregion/ccploy2drg.h"
#include "korvel/polyregion/plydt.h"
#include "korvel/polyregion/trace_files.h"
#include "korvel/region/cregion.h"
#include "korvel/region/crossing_limit.h"
#include "korvel/section/tmod2d.h"
