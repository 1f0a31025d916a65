#pragma once

#include <optional>
#include <set>
#include <span>
#include <vector>

#include "kit/kit.h"

namespace korvel::workbench {

/// How solids are shown.
struct SolidDisplay {
    enum class Edges { none, outlines, all };
    Edges edges = Edges::outlines;
    bool box = false;
    bool transparent = false; ///< all bodies
    bool clipped = false;     ///< what the plane cuts off towards the viewer is left out
};

/// Draws solids with what marks them, from arrays that are kept from one picture to the next.
class SolidScene {
public:
    /// Other solids, or other bodies that are hidden.
    void set_changed() { needs_model_ = true; }

    /// Turned, or coloured.
    void set_turned() { needs_view_ = true; }

    /// Only these vertices have moved.
    void set_moved(const kit::Solids& solids, std::span<const int> vertices);

    /// The outlines of solids with so many edges. Others are drawn without.
    void set_outlines(std::vector<int> outlines, int edge_count);

    struct Content {
        const kit::Solids& solids;
        const std::set<int>& hidden;
        const std::set<int>& selected;
        std::optional<kit::Plane> plane;
    };
    void draw(const Content& content, const kit::ViewFrame& frame, const SolidDisplay& display);

private:
    void take(const Content& content, bool is_transparent, bool is_clipped);

    kit::ModelPainter painter_;
    bool needs_model_ = true;
    bool needs_view_ = true;
    bool is_transparent_ = false;
    bool is_clipped_ = false;
    std::vector<int> outlines_;
    int outlined_edges_ = 0; // the number of edges that they are among
};

} // namespace korvel::workbench
