#pragma once

#include <optional>
#include <set>
#include <vector>

#include <QPointF>

#include "kit/kit.h"

namespace korvel::workbench {

/// Which part of the view of solids a widget shows, and the views it showed before.
class SolidCamera {
public:
    const kit::ViewFrame& frame() const { return frame_; }

    /// The middle stays, and the scale.
    void resize(kit::PictureSize size);

    /// After solids were turned or changed. The middle of the view moves with their extent, so what
    /// is shown is moved the other way unless they were turned.
    void follow(const kit::Solids& solids);

    /// Shows the bodies that are not hidden, or a part of the view, as large as possible.
    void fit(const kit::Solids& solids, const std::set<int>& hidden, bool with_box);
    void show(const kit::Solids& solids, const kit::Rectangle& part);

    /// Whether what `fit` showed was neither moved nor zoomed since.
    bool is_fitted() const { return is_fitted_; }

    /// By pixels of the device.
    void pan(const QPointF& pixels);

    /// What is at the pixel stays there. Limited to what single precision can draw.
    void zoom(double factor, const QPointF& pixel);

    double u_of(const QPointF& pixel) const { return frame_.left + pixel.x() * frame_.unit; }
    double v_of(const QPointF& pixel) const { return frame_.top() - pixel.y() * frame_.unit; }
    QPointF to_pixel(double u, double v) const {
        return {(u - frame_.left) / frame_.unit, (frame_.top() - v) / frame_.unit};
    }

    /// Keeps what is shown now; `go_back` shows the last one kept and returns its angles.
    void keep(const kit::ViewAngles& angles);
    std::optional<kit::ViewAngles> go_back();

private:
    struct Kept {
        kit::ViewAngles angles;
        double u = 0; // in the middle
        double v = 0;
        double unit = 1;
        friend bool operator==(const Kept&, const Kept&) = default;
    };
    Kept now(const kit::ViewAngles& angles) const;
    void look_at(double u, double v);
    void take(const kit::ViewFrame& frame);

    kit::ViewFrame frame_;
    double whole_unit_ = 1; // at which everything is seen
    kit::Point3 centre_ = {};
    kit::ViewAngles angles_ = {};
    std::vector<Kept> kept_;
    bool is_fitted_ = false;
};

/// Around bodies in the view; empty for none. Linear.
kit::Rectangle bounds_in_view(const kit::Solids& solids, const std::set<int>& bodies);

} // namespace korvel::workbench
