// A framework that refuses the library. The argument is the library; this program is linked with
// the framework alone.

#include <cstdio>

#include "tests/support/loaded_library.h"
#include <host_framework.h>

using korvel::test::Library;
using korvel::test::load_library;
using korvel::test::unload_library;

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "not so: %s\n", what);
        ++failures;
    }
}

} // namespace

int main(int, char** arguments) {
    for (int round = 0; round < 2; ++round) {
        stand_in::refuse_next_initialisation();
        const Library refused = load_library(arguments[1]);
#if defined(_WIN32)
        expect(refused == nullptr, "a refused library is not loaded");
#else // where a library cannot refuse to be loaded
        expect(refused != nullptr && stand_in::extension_libraries() == 0 &&
                   unload_library(refused),
               "a refused library is loaded, but not registered");
#endif
        expect(stand_in::extension_libraries() == 0, "nothing stays registered");

        const Library library = load_library(arguments[1]);
        expect(library != nullptr, "the library is loaded later");
        expect(stand_in::extension_libraries() == 1, "and registered");
        expect(unload_library(library), "it is unloaded");
        expect(stand_in::extension_libraries() == 0, "and no longer registered");
    }
    return failures == 0 ? 0 : 1;
}
