#pragma once

#include <QFileInfoList>

namespace korvel::workbench {

/// The sample files that come with the program: those installed beside it, or of the source tree
/// from which it was built. Empty where there are none.
QFileInfoList sample_files();

} // namespace korvel::workbench
