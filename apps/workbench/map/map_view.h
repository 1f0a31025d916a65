#pragma once

#include <memory>
#include <optional>

#include <QImage>
#include <QWidget>

#include "apps/workbench/actions/menus.h"
#include "apps/workbench/flat/flat_viewport.h"
#include "apps/workbench/map/map_tool.h"

namespace korvel::workbench {

class Document;

/// The map of a document: regions in distinct colours, curves, and what the chosen tool draws.
class MapView : public QWidget {
    Q_OBJECT

public:
    explicit MapView(Document& document, QWidget* parent = nullptr);
    ~MapView() override;

    void add_actions(const Menus& menus);

    Document& document() { return document_; }
    const FlatViewport& viewport() const { return viewport_; }

    /// Shows a part of the map, or all of it.
    void show_part(const kit::Rectangle& part);
    void show_all();

    void choose(std::unique_ptr<MapTool> tool);
    MapTool& tool() { return *tool_; }

signals:
    void position_changed(const QString& text); ///< of the mouse, in the user's coordinates
    void hint_changed(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QSize sizeHint() const override { return {600, 500}; }

private:
    MapMouse mouse_of(const QMouseEvent& event) const;
    void paint_regions(QPainter& painter);
    void paint_curves(QPainter& painter);
    void take_map();

    Document& document_;
    FlatViewport viewport_;
    std::unique_ptr<MapTool> tool_;
    std::optional<QPointF> panned_from_;
    bool has_shown_map_ = false;
};

} // namespace korvel::workbench
