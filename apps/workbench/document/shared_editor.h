#pragma once

#include <mutex>
#include <utility>

#include "kit/kit.h"

namespace korvel::workbench {

/// An editor that is used by one thread at a time.
class SharedEditor {
public:
    explicit SharedEditor(kit::Solids solids) : editor_(std::move(solids)) {}

    /// Calls `use` with the editor, when no other thread uses it.
    template <class Use>
    auto with(Use use) {
        const std::lock_guard lock(mutex_);
        return use(editor_);
    }

private:
    std::mutex mutex_;
    kit::SolidsEditor editor_;
};

} // namespace korvel::workbench
