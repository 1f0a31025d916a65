#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <sstream>

#include "apps/command/console.h"
#include "apps/command/program.h"
#include "apps/command/report.h"
#include "kit/kit.h"

namespace {

using namespace korvel::command;

ExitStatus run(int argc, char** argv) {
    try {
        std::ostringstream help;
        const bool fits = korvel_program()->parse(program_arguments(argc, argv), help, std::cerr);
        std::fputs(help.str().c_str(), stdout);
        return fits ? success : bad_input;
    } catch (const korvel::kit::Error& error) {
        return report_error(error);
    } catch (const std::bad_alloc&) {
        return report_error("not enough memory");
    } catch (const std::exception& error) {
        return report_error(error.what());
    }
}

} // namespace

int main(int argc, char** argv) {
    korvel::kit::set_up_signals();
    const Console console;
    return finish_report(run(argc, argv));
}
