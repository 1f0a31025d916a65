#include "kit/base/context.h"

#include "kit/base/error.h"

namespace korvel::kit {

void Context::report(std::string_view stage, int done, int all) const {
    if (stop.stop_requested()) {
        throw Error(Error::Kind::cancelled, std::string(stage) + ": cancelled");
    }
    if (on_progress) {
        on_progress({stage, all > 0 ? static_cast<double>(done) / all : 1.0});
    }
}

void Context::warn(const std::string& message) const {
    if (on_warning) {
        on_warning(message);
    }
}

} // namespace korvel::kit
