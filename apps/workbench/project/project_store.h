#pragma once

#include <filesystem>
#include <memory>

#include <QObject>
#include <QString>

#include "apps/workbench/project/project.h"

namespace korvel::workbench {

class Document;

/// Saves a document as a project file, and opens such files in its place. The worker writes from
/// its own copy of the solids, so that nothing waits for a file.
class ProjectStore : public QObject {
    Q_OBJECT

public:
    explicit ProjectStore(Document& document, QObject* parent = nullptr);

    /// The file in which the document is, or was saved last; empty for none.
    const std::filesystem::path& file() const { return file_; }
    void set_file(const std::filesystem::path& file);

    /// Saves the document as it is now. What is changed while it is written is not in the file.
    void save(const std::filesystem::path& file);

    /// Puts the contents of a file in place of the document, with an empty history.
    void open(const std::filesystem::path& file);

    /// The same for what was kept from a crash: it belongs to the file that it was saved as, with
    /// changes that are not saved.
    void recover(const std::filesystem::path& kept);

    /// Puts an empty document in its place.
    void clear();

    /// Everything but the solids.
    Project snapshot() const;

signals:
    void file_changed();
    void saved(const QString& file);
    void opened(const QString& file);

private:
    struct Opened;
    void load(const std::filesystem::path& file, bool is_recovered);
    void take(Opened& opened);

    Document& document_;
    std::filesystem::path file_;
};

} // namespace korvel::workbench
