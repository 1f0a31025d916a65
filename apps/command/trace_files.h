#pragma once

#include <filesystem>
#include <string>

#include "kit/base/interruption.h"
#include "kit/files/output_file.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// The two trace files of the triangulation, put into a directory when they are complete. Until
/// `replace` the former ones stay as they were, also when a signal ends the program.
///
/// Every call throws OutputError when the system refuses.
class TraceFiles {
public:
    /// Makes the directory if need be.
    explicit TraceFiles(const std::string& directory);
    ~TraceFiles();
    TraceFiles(const TraceFiles&) = delete;
    TraceFiles& operator=(const TraceFiles&) = delete;

    /// Triangulates the set and traces it. The current directory is another one meanwhile.
    void write(PLYDT& set);

    /// Puts the files that were written in place of the former ones.
    void replace();

private:
    std::string name_; // of the directory, as the user spelled it
    OutputFile summary_;
    OutputFile steps_;
    std::filesystem::path scratch_; // where the library writes them
    FileOfSignal held_summary_;
    FileOfSignal held_steps_;
    FileOfSignal held_scratch_;
};

} // namespace korvel::kit
