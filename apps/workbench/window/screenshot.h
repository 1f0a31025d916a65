#pragma once

#include <optional>

#include <QString>
#include <QStringList>

namespace korvel::workbench {

class MainWindow;

/// Opens files in a window, waits until all that follows from them is shown, and writes a picture
/// of the window. Returns what went wrong, if anything did; nothing is written then.
std::optional<QString> take_screenshot(MainWindow& window, const QStringList& files,
                                       const QString& picture);

} // namespace korvel::workbench
