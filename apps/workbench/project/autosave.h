#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QDateTime>
#include <QObject>
#include <QThreadPool>
#include <QTimer>

class QLockFile;

namespace korvel::workbench {

class ProjectStore;
class Document;
struct Project;

/// What a program that ended without saving has left.
struct KeptProject {
    std::filesystem::path file;
    QDateTime time;
};

/// Keeps a document that is not saved in a folder, a few seconds after each change, for the case
/// that the program crashes. Beside the project file is a lock, by which others see that its
/// program still runs.
class Autosave : public QObject {
    Q_OBJECT

public:
    /// Where the system keeps data of the program.
    static std::filesystem::path usual_folder();

    Autosave(Document& document, ProjectStore& store, std::filesystem::path folder,
             QObject* parent = nullptr);
    ~Autosave() override; // ends with the program: nothing is kept

    /// What was left by programs that run no more, the latest first.
    std::vector<KeptProject> kept() const;

    /// Opens what was kept; it is kept until the document is saved.
    void recover(const KeptProject& kept);
    void discard(const KeptProject& kept);

    /// From a change to its being written, with what the writing takes.
    static constexpr int milliseconds = 5000;
    void set_delay(int milliseconds) { timer_.setInterval(milliseconds); }

signals:
    void failed(const QString& message);

private:
    void follow_history();
    void keep();
    void write(std::function<Project()> project);
    void forget();
    std::filesystem::path own_file() const;
    bool lock(const QString& name);
    void adopt(const QString& opened);
    void report(const QString& message);

    Document& document_;
    ProjectStore& store_;
    std::filesystem::path folder_;
    QString name_; // of the own file, without its suffix
    std::unique_ptr<QLockFile> lock_;
    std::filesystem::path recovered_; // that is being opened
    std::unique_ptr<QLockFile> recovered_lock_;
    QTimer timer_;
    QThreadPool writer_; // one file at a time
    std::atomic<bool> has_failed_ = false;

    // Files that were asked for before the last `forget` are not wanted.
    std::shared_ptr<std::atomic<int>> wanted_ = std::make_shared<std::atomic<int>>(0);
};

} // namespace korvel::workbench
