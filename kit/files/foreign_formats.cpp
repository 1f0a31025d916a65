#include "kit/files/foreign_formats.h"

#include "kit/base/module.h"

namespace korvel::kit {

const ForeignLibrary& foreign_library() {
    static const ForeignLibrary library = [] {
#if defined(KORVEL_WITH_GDAL)
        const Module module = load_module("korvel-gdal");
#else
        const Module module = module_left_out("KORVEL_WITH_GDAL");
#endif
        return ForeignLibrary{static_cast<const ForeignFormats*>(module.implementation),
                              module.missing};
    }();
    return library;
}

} // namespace korvel::kit
