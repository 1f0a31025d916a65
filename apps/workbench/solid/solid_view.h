#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QElapsedTimer>
#include <QOpenGLWidget>

#include "apps/workbench/actions/menus.h"
#include "apps/workbench/solid/move_mode.h"
#include "apps/workbench/solid/solid_camera.h"
#include "apps/workbench/solid/solid_scene.h"
#include "apps/workbench/solid/solid_tool.h"
#include "kit/kit.h"

class QAction;
class QDockWidget;

namespace korvel::workbench {

class Document;

/// The solids of a document, drawn with OpenGL.
class SolidView : public QOpenGLWidget {
    Q_OBJECT

public:
    explicit SolidView(Document& document, QWidget* parent = nullptr);
    ~SolidView() override;

    void add_actions(const Menus& menus);

    /// The lists beside the view, which the window places and owns.
    const std::vector<QDockWidget*>& docks() const { return docks_; }

    Document& document() { return document_; }

    /// What the widget shows, in view coordinates; pixels are device pixels.
    const kit::ViewFrame& frame() const { return camera_.frame(); }
    const SolidCamera& camera() const { return camera_; }

    /// Shows all solids that are not hidden, or the selected ones, keeping the angles.
    void fit();
    void fit_selection();

    /// Turns to angles and shows all.
    void look_from(const kit::ViewAngles& angles);

    /// Shows what was shown before the last turning, moving or zooming.
    void go_back();

    const SolidDisplay& display() const { return display_; }
    void set_display(const SolidDisplay& display);

    void choose(std::unique_ptr<SolidTool> tool);
    SolidTool& tool() { return *tool_; }

    /// Shows in the status bar what can be done, or why something was refused.
    void show_hint(const QString& text) { emit hint_changed(text); }

    /// Reports what was picked; typed moves begin with it.
    void report_pick(const std::optional<kit::Pick>& pick);

    /// Shows how far a drag has come.
    void show_position(const QString& text) { emit position_changed(text); }

signals:
    void position_changed(const QString& text); ///< of the mouse, in the user's coordinates
    void hint_changed(const QString& text);
    void picked(const QString& report); ///< several lines
    void tool_changed();

protected:
    void paintGL() override;
    void resizeGL(int width, int height) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QSize sizeHint() const override { return {600, 500}; }

private:
    void connect_model();
    void add_view_actions(const Menus& menus);
    void add_display_actions(const Menus& menus);
    void add_tool_actions(const Menus& menus);
    void add_mode_actions(QMenu& menu);
    void add_change_actions(const Menus& menus);

    void add_docks();
    void ask_to_raise();
    void ask_for_starter(bool is_ball);
    void ask_to_move();
    void ask_to_weld();

    SolidMouse mouse_of(const QMouseEvent& event) const;
    void turn(double right, double down);
    void zoom(double factor, const QPointF& pixel);
    void pan(const QPointF& pixels);
    bool move_by_key(const QKeyEvent& event);
    void keep_view();
    void take_solids();
    void follow_outlines();
    void take_trial();
    kit::PictureSize pixels() const;
    QPointF middle() const { return QPointF(frame().size.width, frame().size.height) / 2; }

    Document& document_;
    SolidCamera camera_;
    SolidScene scene_;
    SolidDisplay display_;
    std::unique_ptr<SolidTool> tool_;
    std::function<std::unique_ptr<SolidTool>()> make_tool_; // the chosen one
    MoveMode move_mode_ = MoveMode::fading;
    std::optional<QPointF> dragged_from_;
    bool is_panning_ = false;
    bool is_shown_ = false; // it has a size
    bool is_new_ = true;    // other solids have come
    kit::Box shown_bounds_;
    QElapsedTimer since_zoom_;
    std::vector<QDockWidget*> docks_;
    std::optional<kit::Pick> last_pick_;
};

} // namespace korvel::workbench
