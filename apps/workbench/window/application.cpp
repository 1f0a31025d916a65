#include "apps/workbench/window/application.h"

#include <QCoreApplication>
#include <QSurfaceFormat>

#include "kit/kit.h"

namespace korvel::workbench {

void set_up_application() {
    QSurfaceFormat format;
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    QSurfaceFormat::setDefaultFormat(format);
    QCoreApplication::setOrganizationName(QStringLiteral("korvel"));
    QCoreApplication::setApplicationName(QStringLiteral("korvel-workbench"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KORVEL_VERSION));
}

} // namespace korvel::workbench
