#include "korvel/platform/framework.h"

#include <cstdio>
#include <utility>

namespace korvel {
namespace {

CDynLinkLibrary* chain = nullptr;

// Constructed at the first use, which may be before the library's static objects are.
message_box_handler& installed_handler() {
    static message_box_handler handler;
    return handler;
}

} // namespace

message_box_handler set_message_box_handler(message_box_handler handler) {
    return std::exchange(installed_handler(), std::move(handler));
}

CDynLinkLibrary* first_extension_library() noexcept {
    return chain;
}

} // namespace korvel

CDC::~CDC() = default;

int AfxMessageBox(const char* text, unsigned type) {
    const char* shown = text != nullptr ? text : "";
    if (korvel::installed_handler()) {
        // The handler may install another one while it runs.
        const korvel::message_box_handler handler = korvel::installed_handler();
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

CDynLinkLibrary::CDynLinkLibrary(const AFX_EXTENSION_MODULE& record)
    : module_(record.hModule), next_(std::exchange(korvel::chain, this)) {}

CDynLinkLibrary::~CDynLinkLibrary() {
    CDynLinkLibrary** link = &korvel::chain;
    while (*link != nullptr && *link != this) {
        link = &(*link)->next_;
    }
    if (*link == this) {
        *link = next_;
    }
}
