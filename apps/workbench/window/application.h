#pragma once

namespace korvel::workbench {

/// To be called before the QApplication is made: asks for OpenGL 2.1 with the calls of the library,
/// and names the program.
void set_up_application();

} // namespace korvel::workbench
