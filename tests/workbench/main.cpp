// Runs the tests of the workbench on a display. Every warning of Qt is a failure.

#include <QApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include "apps/workbench/window/program.h"

namespace {

void fail_on_warning(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type != QtDebugMsg && type != QtInfoMsg) {
        ADD_FAILURE() << "Qt: " << text.toStdString();
    }
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    korvel::workbench::set_up_application();
    const QApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true); // settings of nobody
    qInstallMessageHandler(fail_on_warning);
    return RUN_ALL_TESTS();
}
