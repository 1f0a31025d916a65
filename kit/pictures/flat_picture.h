#pragma once

#include <optional>

#include "kit/base/rectangle.h"
#include "kit/maps/map.h"
#include "kit/maps/triangulation.h"
#include "kit/pictures/main_extent.h"
#include "kit/pictures/picture_fit.h"
#include "kit/pictures/picture_size.h"
#include "korvel/module/korvel.h"

// Pictures of maps: the regions or the triangles of one, x to the right and y upward, as large as
// the page and a margin allow.

namespace korvel::kit {

enum class RegionColours {
    distinct, ///< chosen such that regions that share a side have clearly different ones
    own,      ///< those of the regions themselves; black where none were set
};

/// How much of a map a picture shows.
enum class Extent {
    all,
    most, ///< what contains 99 % of the corners, where that is much smaller; see `main_extent`
};

/// How a map is drawn. The exact classes by themselves have no placement: their coordinates are the
/// user's.
struct MapPictureOptions {
    PictureSize size = {};

    /// What the picture shows, in the user's coordinates of the map.
    std::optional<Rectangle> part = {};

    /// What it shows without a `part`.
    Extent extent = Extent::all;

    /// How many times as long as a unit of y a unit of x is drawn; above 0.
    double stretch = 1;

    /// For data whose y grows downward.
    bool y_down = false;

    RegionColours colours = RegionColours::distinct;

    /// Device units to a pixel of a `CDC` that is drawn into: 1 for most windows. Files are always
    /// drawn with `PictureFit::units_per_pixel`.
    int units_per_pixel = 1;

    PictureFit fit(const Rectangle& whole_map) const;

    /// The same for a map or its triangles, by `extent`; linear, or a sort for `Extent::most`.
    PictureFit fit(const CCPloy2DRg& map) const;
    PictureFit fit(const PLYDT& triangles) const;
};

/// The number of regions that a picture of a map shows in part or not at all.
int regions_left_out(const Map& map, const MapPictureOptions& options);

/// Draws the regions of a map into the upper left `options.size` pixels of a device context, which
/// keeps its pen. Larger regions come first, so that what lies inside a region that does not have
/// it as a hole stays visible. The smaller a region or triangle is in the picture, the thinner its
/// outline. Nothing is drawn of an empty map. Costs a copy of the map and, in
/// distinct colours, the search for its neighbours.
void draw(const Map& map, CDC& dc, const MapPictureOptions& options = {});
void draw(const CCPloy2DRg& map, CDC& dc, const MapPictureOptions& options = {});

/// Draws the triangles of a map likewise, in the colours of `PLYDT::Draw_Trgls`, which run from the
/// first triangle to the last. Regions that are not covered are painted over them, magenta with a
/// wide outline. Linear.
void draw(const Triangulation& triangles, CDC& dc, const MapPictureOptions& options = {});
void draw(const PLYDT& triangles, CDC& dc, const MapPictureOptions& options = {});

} // namespace korvel::kit
