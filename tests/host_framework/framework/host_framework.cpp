#include <host_framework.h>

#include <utility>

namespace {

CDynLinkLibrary* chain = nullptr;
bool refuses_next = false;
int shown = 0;

} // namespace

int AfxMessageBox(const char* /*text*/, unsigned /*type*/, unsigned /*help*/) {
    ++shown;
    return IDOK;
}

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& record, HINSTANCE module) {
    if (std::exchange(refuses_next, false)) {
        return 0;
    }
    record = {1, module};
    return 1;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& record, BOOL /*all*/) {
    for (CDynLinkLibrary* library = chain; library != nullptr;) {
        CDynLinkLibrary* const next = library->next;
        if (library->module == record.hModule) {
            delete library;
        }
        library = next;
    }
    record = {};
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& record, BOOL /*is_system*/)
    : module(record.hModule), next(std::exchange(chain, this)) {}

CDynLinkLibrary::~CDynLinkLibrary() {
    CDynLinkLibrary** link = &chain;
    while (*link != this) {
        link = &(*link)->next;
    }
    *link = next;
}

namespace stand_in {

int extension_libraries() {
    int count = 0;
    for (const CDynLinkLibrary* library = chain; library != nullptr; library = library->next) {
        ++count;
    }
    return count;
}

void refuse_next_initialisation() {
    refuses_next = true;
}

int notices() {
    return shown;
}

} // namespace stand_in
