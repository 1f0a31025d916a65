#include "korvel/platform/framework.h"

#include <cstdio>
#include <mutex>
#include <utility>

namespace korvel {

/// The libraries that are loaded, the last one registered first.
class ExtensionChain {
public:
    CDynLinkLibrary* first() {
        const std::lock_guard lock(mutex_);
        return first_;
    }
    void add(CDynLinkLibrary& library) {
        const std::lock_guard lock(mutex_);
        library.next_ = std::exchange(first_, &library);
    }
    void remove(const CDynLinkLibrary& library) {
        remove_if([&](const CDynLinkLibrary& listed) { return &listed == &library; });
    }
    void remove_all_of(HINSTANCE module) {
        remove_if([&](const CDynLinkLibrary& listed) { return listed.module_ == module; });
    }

private:
    template <class Predicate>
    void remove_if(Predicate is_removed) {
        const std::lock_guard lock(mutex_);
        CDynLinkLibrary** link = &first_;
        while (CDynLinkLibrary* const library = *link) {
            if (is_removed(*library)) {
                *link = std::exchange(library->next_, nullptr);
            } else {
                link = &library->next_;
            }
        }
    }

    std::mutex mutex_; // never locked while host code runs
    CDynLinkLibrary* first_ = nullptr;
};

namespace {

// Without a destructor that does anything: modules leave it when the process ends, in any order.
ExtensionChain chain;

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
    return chain.first();
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
    korvel::chain.remove_all_of(record.hModule);
    record = {};
}

CDynLinkLibrary::CDynLinkLibrary(const AFX_EXTENSION_MODULE& record) : module_(record.hModule) {
    korvel::chain.add(*this);
}

CDynLinkLibrary::~CDynLinkLibrary() {
    korvel::chain.remove(*this);
}
