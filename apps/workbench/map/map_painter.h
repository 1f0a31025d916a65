#pragma once

#include <set>

#include <QImage>
#include <QPainter>
#include <QPalette>

#include "apps/workbench/document/curves.h"
#include "apps/workbench/document/find_map.h"
#include "apps/workbench/document/map_model.h"
#include "apps/workbench/flat/flat_viewport.h"
#include "apps/workbench/flat/screen_lines.h"

namespace korvel::workbench {

/// Draws the layers of a map, each by one call, of which only what is seen costs time.
class MapPainter {
public:
    MapPainter(QPainter& painter, const FlatViewport& viewport, const QPalette& palette);

    void paint_background(const QImage& picture, const Background& background);

    /// Selected ones are darker, with a wide border. `opacity` lets the background through.
    void paint_regions(const FoundMap& found, const std::set<int>& selected, double opacity);
    void paint_selection(const FoundMap& found, const std::set<int>& selected);
    void paint_triangles(const kit::Triangulation& triangles);
    void paint_curves(const Curves& curves);

    /// Names, or numbers where there are none, where they fit into their regions.
    void paint_labels(const FoundMap& found);
    void paint_problems(const std::vector<Problem>& problems);

private:
    void paint_label(const FoundMap& found, int region);

    QPainter& painter_;
    const FlatViewport& viewport_;
    const QPalette& palette_;
    ScreenLines lines_;
};

/// The colour of what is chosen or marked in a map.
QColor mark_colour();

} // namespace korvel::workbench
