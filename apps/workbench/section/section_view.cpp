#include "apps/workbench/section/section_view.h"

#include <QPainter>

#include "apps/workbench/document/document.h"
#include "apps/workbench/flat/painter_canvas.h"

namespace korvel::workbench {

SectionView::SectionView(Document& document, QWidget* parent)
    : QWidget(parent), document_(document) {
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Section"));
    connect(&document_.section(), &SectionModel::section_changed, this,
            qOverload<>(&SectionView::update));
}

void SectionView::add_actions(const Menus& /*menus*/) {}

void SectionView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    const auto section = document_.section().section();
    if (section == nullptr) {
        return;
    }
    constexpr int units_per_pixel = 16;
    painter.setRenderHint(QPainter::Antialiasing);
    PainterCanvas canvas(painter, units_per_pixel);
    kit::draw(*section, canvas,
              {.size = {width(), height()}, .labels = &canvas, .units_per_pixel = units_per_pixel});
}

} // namespace korvel::workbench
