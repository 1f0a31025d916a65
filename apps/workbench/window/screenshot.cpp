#include "apps/workbench/window/screenshot.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QPixmap>
#include <QThread>

#include "apps/workbench/window/main_window.h"

namespace korvel::workbench {
namespace {

// Until the window is on the screen, and what timers begin is done.
void let_events_pass(Worker& worker) {
    constexpr int milliseconds = 500;
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        QApplication::processEvents();
        worker.wait();
        QThread::msleep(1);
    }
}

} // namespace

std::optional<QString> take_screenshot(MainWindow& window, const QStringList& files,
                                       const QString& picture) {
    std::optional<QString> problem;
    window.set_problem_handler(
        [&](const QString& title, const QString& message) { problem = title + ": " + message; });
    window.show();
    for (const QString& file : files) {
        window.open(kit::path_of(file.toStdString()));
        window.document().worker().wait();
    }
    let_events_pass(window.document().worker());
    if (problem) {
        return problem;
    }
    QByteArray png;
    QBuffer buffer(&png);
    window.grab().save(&buffer, "PNG");
    try {
        kit::OutputFile out(kit::path_of(picture.toStdString()));
        std::fwrite(png.constData(), 1, static_cast<std::size_t>(png.size()), out.stream());
        out.replace();
    } catch (const kit::Error& error) {
        return QString::fromUtf8(error.what());
    }
    return {};
}

} // namespace korvel::workbench
