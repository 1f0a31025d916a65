#include "apps/workbench/window/samples.h"

#include <QCoreApplication>
#include <QDir>

namespace korvel::workbench {

QFileInfoList sample_files() {
    const QStringList kinds = {QStringLiteral("*.curves"), QStringLiteral("*.geojson"),
                               QStringLiteral("*.model"), QStringLiteral("*.korvel")};
    const QString installed =
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/korvel/samples");
    for (const QString& folder : {installed, QStringLiteral(KORVEL_SAMPLES)}) {
        QFileInfoList files = QDir(folder).entryInfoList(kinds, QDir::Files, QDir::Name);
        if (!files.isEmpty()) {
            return files;
        }
    }
    return {};
}

} // namespace korvel::workbench
