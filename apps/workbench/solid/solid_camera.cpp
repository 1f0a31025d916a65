#include "apps/workbench/solid/solid_camera.h"

#include <algorithm>

namespace korvel::workbench {

void SolidCamera::resize(kit::PictureSize size) {
    const double u = (frame_.left + frame_.right()) / 2;
    const double v = (frame_.bottom + frame_.top()) / 2;
    frame_.size = size;
    look_at(u, v);
}

void SolidCamera::follow(const kit::Solids& solids) {
    const TMOD3D& model = solids.model();
    const kit::Point3 centre = kit::to_point(model.view_center);
    if (solids.view() == angles_) {
        frame_.left -= centre[0] - centre_[0];
        frame_.bottom -= centre[1] - centre_[1];
    }
    centre_ = centre;
    angles_ = solids.view();
    const kit::ViewFrame whole = kit::view_frame(solids, {.size = frame_.size, .box = true});
    // With room for what is dragged towards the viewer or away.
    const double depth = whole.nearest - whole.farthest;
    frame_.nearest = whole.nearest + depth;
    frame_.farthest = whole.farthest - depth;
    whole_unit_ = whole.unit;
}

void SolidCamera::fit(const kit::Solids& solids, const std::set<int>& hidden, bool with_box) {
    follow(solids);
    if (!hidden.empty()) {
        std::set<int> shown;
        for (const kit::Body body : solids) {
            if (!hidden.contains(body.index())) {
                shown.insert(body.index());
            }
        }
        show(solids, bounds_in_view(solids, shown));
        is_fitted_ = true;
        return;
    }
    is_fitted_ = true;
    take(kit::view_frame(solids, {.size = frame_.size, .box = with_box}));
}

void SolidCamera::show(const kit::Solids& solids, const kit::Rectangle& part) {
    if (part.is_empty()) {
        return;
    }
    is_fitted_ = false;
    take(kit::view_frame(solids, {.size = frame_.size, .part = part}));
}

void SolidCamera::take(const kit::ViewFrame& frame) {
    frame_.left = frame.left;
    frame_.bottom = frame.bottom;
    frame_.unit = frame.unit;
}

void SolidCamera::pan(const QPointF& pixels) {
    is_fitted_ = false;
    frame_.left -= pixels.x() * frame_.unit;
    frame_.bottom += pixels.y() * frame_.unit;
}

// Positions have 24 binary digits: at the nearest a pixel is still some of the last ones wide.
void SolidCamera::zoom(double factor, const QPointF& pixel) {
    is_fitted_ = false;
    constexpr double nearest = 1e-4;
    constexpr double farthest = 100;
    const double u = u_of(pixel);
    const double v = v_of(pixel);
    const double unit =
        std::clamp(frame_.unit * factor, nearest * whole_unit_, farthest * whole_unit_);
    frame_.unit = unit;
    frame_.left = u - pixel.x() * unit;
    frame_.bottom = v + pixel.y() * unit - unit * frame_.size.height;
}

void SolidCamera::keep(const kit::ViewAngles& angles) {
    constexpr std::size_t most = 100;
    const Kept shown = now(angles);
    if (kept_.empty() || !(kept_.back() == shown)) {
        kept_.push_back(shown);
    }
    if (kept_.size() > most) {
        kept_.erase(kept_.begin());
    }
}

std::optional<kit::ViewAngles> SolidCamera::go_back() {
    is_fitted_ = false;
    if (!kept_.empty() && kept_.back() == now(angles_)) {
        kept_.pop_back();
    }
    if (kept_.empty()) {
        return {};
    }
    const Kept back = kept_.back();
    kept_.pop_back();
    frame_.unit = back.unit;
    look_at(back.u, back.v);
    return back.angles;
}

SolidCamera::Kept SolidCamera::now(const kit::ViewAngles& angles) const {
    return {angles, (frame_.left + frame_.right()) / 2, (frame_.bottom + frame_.top()) / 2,
            frame_.unit};
}

void SolidCamera::look_at(double u, double v) {
    frame_.left = u - frame_.unit * frame_.size.width / 2;
    frame_.bottom = v - frame_.unit * frame_.size.height / 2;
}

kit::Rectangle bounds_in_view(const kit::Solids& solids, const std::set<int>& bodies) {
    kit::Rectangle bounds;
    for (const int body : bodies) {
        for (const int vertex : solids[body].vertices()) {
            const double* const at = solids.model().verts[vertex].view_xyz;
            bounds.take_in(at[0], at[1]);
        }
    }
    return bounds;
}

} // namespace korvel::workbench
