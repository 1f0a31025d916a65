#pragma once

#include <memory>

#include "kit/base/context.h"
#include "kit/solids/soup.h"
#include "kit/solids/weld.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Makes a welded model of bodies, with everything derived; see `weld`.
std::unique_ptr<TMOD3D> welded(Soup soup, const WeldOptions& options, const Context& context,
                               WeldReport& report);

/// Derives everything of a model of vertices, faces and bodies, its edges too.
void derive_from_faces(TMOD3D& model, const Context& context);

} // namespace korvel::kit
