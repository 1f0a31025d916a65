#pragma once

#include <optional>

#include <QWidget>

#include "apps/workbench/actions/menus.h"
#include "kit/kit.h"

namespace korvel::workbench {

class Document;

/// The section of a document, filled by the rules of the library, with axes and numbers of bodies.
class SectionView : public QWidget {
    Q_OBJECT

public:
    explicit SectionView(Document& document, QWidget* parent = nullptr);

    void add_actions(const Menus& menus);

signals:
    void position_changed(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    QSize sizeHint() const override { return {600, 300}; }

private:
    Document& document_;
};

} // namespace korvel::workbench
