#pragma once

#include <filesystem>
#include <string>

#include "kit/kit.h"

namespace korvel::command {

/// The two trace files of the triangulation, put into a directory when they are complete. Until
/// `replace` the former ones stay as they were, also when a signal ends the program.
///
/// Every call throws an output error when the system refuses.
class TraceFiles {
public:
    /// Makes the directory if need be.
    explicit TraceFiles(const std::string& directory);
    ~TraceFiles();
    TraceFiles(const TraceFiles&) = delete;
    TraceFiles& operator=(const TraceFiles&) = delete;

    /// Triangulates the set and traces it. The current directory is another one meanwhile.
    void write(PLYDT& set);

    /// Replaces the former files by those that were written.
    void replace();

private:
    std::string name_; // of the directory, as the user spelled it
    kit::OutputFile summary_;
    kit::OutputFile steps_;
    std::filesystem::path scratch_; // where the library writes them
    kit::RemoveOnSignal held_summary_;
    kit::RemoveOnSignal held_steps_;
    kit::RemoveOnSignal held_scratch_;
};

} // namespace korvel::command
