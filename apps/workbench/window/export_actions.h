#pragma once

#include <functional>

#include <QObject>

#include "apps/workbench/actions/menus.h"
#include "kit/kit.h"

class QMainWindow;

namespace korvel::workbench {

class Document;
class SectionView;
class SolidView;

/// The menu of what can be written for other programs. Files are written by the worker.
class ExportActions : public QObject {
    Q_OBJECT

public:
    ExportActions(Document& document, SolidView& solids, SectionView& section, QMainWindow& window);

    void add_actions(const Menus& menus);

    // The format is that of the suffix. Nothing is written of what there is none of.

    void write_regions(const std::filesystem::path& file);
    void write_curves(const std::filesystem::path& file);
    void write_section(const std::filesystem::path& file);
    void write_solids(const std::filesystem::path& file);
    void write_view(const std::filesystem::path& file);

signals:
    void written(const QString& file);

private:
    using Write = void (ExportActions::*)(const std::filesystem::path& file);
    void add(QMenu& menu, const QString& text, QString (*formats)(), const char* suffix,
             Write write);
    void ask(const QString& title, const QString& formats, const char* suffix, Write write);
    void start(const std::filesystem::path& file, std::function<void()> write);
    void update();

    Document& document_;
    SolidView& solids_;
    SectionView& section_;
    QMainWindow& window_;
    std::vector<QAction*> actions_; // regions, curves, section, solids, their view
};

} // namespace korvel::workbench
