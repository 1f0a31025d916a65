#include <QApplication>
#include <QCommandLineParser>

#include "apps/workbench/window/application.h"
#include "apps/workbench/window/main_window.h"

int main(int argc, char** argv) {
    using namespace korvel::workbench;
    set_up_application();
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QCoreApplication::translate("main", "Draw, see, touch and cut maps and solids"));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 QCoreApplication::translate("main", "Files to open"),
                                 QStringLiteral("[FILE…]"));
    parser.process(application);
    MainWindow window;
    for (const QString& file : parser.positionalArguments()) {
        window.open(korvel::kit::path_of(file.toStdString()));
    }
    window.show();
    return QApplication::exec();
}
