#pragma once

#include <memory>
#include <optional>

#include <QOpenGLWidget>

#include "apps/workbench/actions/menus.h"
#include "apps/workbench/solid/solid_tool.h"
#include "kit/kit.h"

namespace korvel::workbench {

class Document;

/// The solids of a document, drawn with OpenGL.
class SolidView : public QOpenGLWidget {
    Q_OBJECT

public:
    explicit SolidView(Document& document, QWidget* parent = nullptr);
    ~SolidView() override;

    void add_actions(const Menus& menus);

    Document& document() { return document_; }

    /// What the widget shows, in view coordinates; pixels are device pixels.
    const kit::ViewFrame& frame() const { return frame_; }

    /// Shows all solids, keeping the angles.
    void fit();

    void choose(std::unique_ptr<SolidTool> tool);
    SolidTool& tool() { return *tool_; }

signals:
    void position_changed(const QString& text); ///< of the mouse, in the user's coordinates
    void hint_changed(const QString& text);

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
    SolidMouse mouse_of(const QMouseEvent& event) const;
    void turn(const QPointF& pixels);
    void pan(const QPointF& pixels);
    kit::PictureSize pixels() const;

    Document& document_;
    std::unique_ptr<SolidTool> tool_;
    kit::ViewFrame frame_;
    kit::ViewOptions look_;
    std::optional<QPointF> dragged_from_;
    bool is_panning_ = false;
};

} // namespace korvel::workbench
