#include "apps/command/console.h"

#include <algorithm>

#include "kit/kit.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#include <stdlib.h>
#else
#include <unistd.h>
#endif

namespace korvel::command {

#if defined(_WIN32)

Console::Console() : former_code_page_(GetConsoleOutputCP()) {
    for (FILE* const stream : {stdin, stdout, stderr}) {
        _setmode(_fileno(stream), _O_BINARY);
    }
    _fmode = _O_BINARY;
    SetConsoleOutputCP(CP_UTF8);
}

Console::~Console() {
    std::fflush(stdout);
    if (former_code_page_ != 0) {
        SetConsoleOutputCP(former_code_page_);
    }
}

std::vector<std::string> program_arguments(int /*argc*/, char** /*argv*/) {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; words != nullptr && i < count; ++i) {
        arguments.push_back(kit::text_of(words[i]));
    }
    LocalFree(words);
    return arguments;
}

bool is_terminal(FILE* stream) {
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    constexpr DWORD takes_escape_sequences = 0x4; // ENABLE_VIRTUAL_TERMINAL_PROCESSING
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0 &&
           SetConsoleMode(handle, mode | takes_escape_sequences) != 0;
}

#else

Console::Console() = default;
Console::~Console() = default;

std::vector<std::string> program_arguments(int argc, char** argv) {
    return {argv + std::min(argc, 1), argv + argc};
}

bool is_terminal(FILE* stream) {
    return isatty(fileno(stream)) != 0;
}

#endif

} // namespace korvel::command
