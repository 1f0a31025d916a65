#pragma once

namespace korvel::workbench {

/// To be called before the QApplication is made: asks for OpenGL 2.1 with the calls of the library,
/// and names the program.
void set_up_application();

/// The whole program: options, a window with the files of the command line, events. Returns its
/// exit status.
int run_program(int argc, char** argv);

} // namespace korvel::workbench
