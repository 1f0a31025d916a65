#pragma once

// The one header that a host includes.

#include "korvel/geometry/triutvalinst.h"
#include "korvel/module/export.h"
#include "korvel/platform/framework.h"
#include "korvel/polyregion/ccploy2drg.h"
#include "korvel/polyregion/plydt.h"
#include "korvel/region/cregion.h"
