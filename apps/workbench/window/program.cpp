#include "apps/workbench/window/program.h"

#include <cstdio>
#include <optional>

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QIcon>
#include <QSurfaceFormat>

#include "apps/workbench/desktop/icon.h"
#include "apps/workbench/window/main_window.h"
#include "apps/workbench/window/preferences.h"
#include "apps/workbench/window/screenshot.h"
#include "kit/kit.h"

namespace korvel::workbench {
namespace {

QString text_for_user(const char* text) {
    return QCoreApplication::translate("Program", text);
}

/// The options of the program.
class Arguments {
public:
    Arguments();

    /// Help, version, and mistakes are answered without a display, and end the program.
    void answer_or_exit(int argc, char** argv);

    void take(const QApplication& application) { parser_.process(application); }

    QStringList files() const { return parser_.positionalArguments(); }
    QString screenshot() const { return parser_.value(screenshot_); }
    std::filesystem::path autosave() const;

    /// Nothing if it is no size.
    std::optional<QSize> size() const;

private:
    QCommandLineParser parser_;
    QCommandLineOption screenshot_;
    QCommandLineOption size_;
    QCommandLineOption autosave_;
};

int fail(const QString& message) {
    std::fprintf(stderr, "korvel-workbench: %s\n", qUtf8Printable(message));
    return 1;
}

} // namespace

void set_up_application() {
    QSurfaceFormat format;
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    QSurfaceFormat::setDefaultFormat(format);
    QCoreApplication::setOrganizationName(QStringLiteral("korvel"));
    QCoreApplication::setApplicationName(QStringLiteral("korvel-workbench"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KORVEL_VERSION));
}

int run_program(int argc, char** argv) {
    set_up_application();
    Arguments arguments;
    arguments.answer_or_exit(argc, argv);
    const QApplication application(argc, argv);
    QApplication::setWindowIcon(QIcon(QPixmap::fromImage(icon_image(256))));
    QGuiApplication::setDesktopFileName(QStringLiteral("korvel-workbench"));
    arguments.take(application);
    Preferences::load().apply_palette();
    const std::optional<QSize> size = arguments.size();
    if (!size) {
        return fail(text_for_user("--size takes WIDTHxHEIGHT in pixels"));
    }
    MainWindow window(arguments.autosave());
    window.resize(*size);
    if (!arguments.screenshot().isEmpty()) {
        const std::optional<QString> problem =
            take_screenshot(window, arguments.files(), arguments.screenshot());
        return problem ? fail(*problem) : 0;
    }
    window.show();
    window.file_actions().offer_kept();
    for (const QString& file : arguments.files()) {
        window.open(kit::path_of(file.toStdString()));
    }
    return QApplication::exec();
}

namespace {

Arguments::Arguments()
    : screenshot_(QStringLiteral("screenshot"),
                  text_for_user("Write a picture of the window with the files open, and end."),
                  QStringLiteral("PNG")),
      size_(QStringLiteral("size"), text_for_user("Size of the window in pixels."),
            QStringLiteral("WIDTHxHEIGHT"), QStringLiteral("1280x800")),
      autosave_(QStringLiteral("autosave-dir"),
                text_for_user("Where work that is not saved is kept for the case of a crash."),
                QStringLiteral("FOLDER")) {
    parser_.setApplicationDescription(text_for_user(
        "Draws curves and finds their regions, raises these to solids, and turns, changes and cuts "
        "them. Opens maps and solids of every format that `korvel formats` lists."));
    parser_.addHelpOption();
    parser_.addVersionOption();
    parser_.addOptions({screenshot_, size_, autosave_});
    parser_.addPositionalArgument(QStringLiteral("FILE"), text_for_user("Maps or solids to open."),
                                  QStringLiteral("[FILE...]"));
}

// The options of Qt itself (-platform, -style, …) are the application's.
void Arguments::answer_or_exit(int argc, char** argv) {
    const QCoreApplication without_display(argc, argv);
    parser_.parse(QCoreApplication::arguments());
    if (parser_.isSet(QStringLiteral("help"))) {
        parser_.showHelp();
    }
    if (parser_.isSet(QStringLiteral("version"))) {
        parser_.showVersion();
    }
}

std::filesystem::path Arguments::autosave() const {
    return parser_.isSet(autosave_) ? kit::path_of(parser_.value(autosave_).toStdString())
                                    : Autosave::usual_folder();
}

std::optional<QSize> Arguments::size() const {
    const QStringList sides = parser_.value(size_).split(QLatin1Char('x'));
    constexpr int largest = 16384;
    bool is_width = false;
    bool is_height = false;
    const int width = sides.first().toInt(&is_width);
    const int height = sides.last().toInt(&is_height);
    if (sides.size() != 2 || !is_width || !is_height || width < 1 || height < 1 ||
        width > largest || height > largest) {
        return {};
    }
    return QSize(width, height);
}

} // namespace
} // namespace korvel::workbench
