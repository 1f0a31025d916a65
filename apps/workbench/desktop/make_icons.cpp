// make_icons DIR: writes the icon of the program in the sizes of desktops, as DIR/SIZExSIZE.png.

#include <cstdio>

#include <QDir>

#include "apps/workbench/desktop/icon.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_icons DIR\n");
        return 1;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (const int pixels : {16, 32, 48, 64, 128, 256}) {
        const QString file = folder.filePath(QStringLiteral("%1x%1.png").arg(pixels));
        if (!korvel::workbench::icon_image(pixels).save(file)) {
            std::fprintf(stderr, "make_icons: %s cannot be written\n", qPrintable(file));
            return 1;
        }
    }
    return 0;
}
