#include "korvel/platform/framework.h"

#include <cstdio>
#include <mutex>
#include <utility>

namespace korvel {
namespace {

CDynLinkLibrary* chain = nullptr;
std::mutex chain_mutex; // never locked while host code runs

/// The handler of all threads that have none of their own.
class ProcessHandler {
public:
    message_box_handler get() const {
        const std::lock_guard lock(mutex_);
        return handler_;
    }
    message_box_handler exchange(message_box_handler handler) {
        const std::lock_guard lock(mutex_);
        return std::exchange(handler_, std::move(handler));
    }

private:
    mutable std::mutex mutex_;
    message_box_handler handler_;
};

// Constructed at the first use, which may be before the library's static objects are.
ProcessHandler& process_handler() {
    static ProcessHandler handler;
    return handler;
}

thread_local ThreadOverride<message_box_handler>* thread_handler = nullptr;

} // namespace

message_box_handler set_message_box_handler(message_box_handler handler) {
    return process_handler().exchange(std::move(handler));
}

MessageBoxOverride::MessageBoxOverride(message_box_handler handler)
    : override_(thread_handler, std::move(handler)) {}

MessageBoxOverride::~MessageBoxOverride() = default;

CDynLinkLibrary* first_extension_library() noexcept {
    const std::lock_guard lock(chain_mutex);
    return chain;
}

} // namespace korvel

CDC::~CDC() = default;

int AfxMessageBox(const char* text, unsigned type) {
    const char* shown = text != nullptr ? text : "";
    // The copy stays while the handler installs another one.
    if (const korvel::message_box_handler handler = korvel::thread_handler != nullptr
                                                        ? korvel::thread_handler->value
                                                        : korvel::process_handler().get()) {
        return handler(shown, type);
    }
    std::fprintf(stderr, "%s\n", shown);
    return IDOK;
}

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& record, HINSTANCE module) {
    if (record.bInitialized == 0) {
        record = {1, module};
    }
    return record.bInitialized;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& record) {
    if (record.bInitialized == 0) {
        return;
    }
    const std::lock_guard lock(korvel::chain_mutex);
    CDynLinkLibrary** link = &korvel::chain;
    while (*link != nullptr) {
        CDynLinkLibrary* library = *link;
        if (library->module_ == record.hModule) {
            *link = std::exchange(library->next_, nullptr);
        } else {
            link = &library->next_;
        }
    }
    record = {};
}

CDynLinkLibrary::CDynLinkLibrary(const AFX_EXTENSION_MODULE& record) : module_(record.hModule) {
    const std::lock_guard lock(korvel::chain_mutex);
    next_ = std::exchange(korvel::chain, this);
}

CDynLinkLibrary::~CDynLinkLibrary() {
    const std::lock_guard lock(korvel::chain_mutex);
    CDynLinkLibrary** link = &korvel::chain;
    while (*link != nullptr && *link != this) {
        link = &(*link)->next_;
    }
    if (*link == this) {
        *link = next_;
    }
}
