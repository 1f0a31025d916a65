#pragma once

#include <algorithm>

#include <QLabel>

namespace korvel::workbench {

/// A text in the status bar that takes further lines where the window is too narrow for one.
class HintLabel : public QLabel {
public:
    explicit HintLabel(QWidget* parent = nullptr) : QLabel(parent) {
        setWordWrap(true);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }

    QSize sizeHint() const override {
        constexpr int most_lines = 3;
        const int line = fontMetrics().lineSpacing();
        return {0, std::clamp(heightForWidth(width()), line, most_lines * line)};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }
    bool hasHeightForWidth() const override { return false; } // the width is known

protected:
    void resizeEvent(QResizeEvent* event) override {
        QLabel::resizeEvent(event);
        updateGeometry();
    }
};

} // namespace korvel::workbench
