#include "kit/base/context.h"

#include "kit/base/error.h"

namespace korvel::kit {

void Context::report(std::string_view stage, long long done, long long all) const {
    stop_if_requested(stage);
    if (on_progress) {
        on_progress({stage, all > 0 ? static_cast<double>(done) / static_cast<double>(all) : 1.0});
    }
}

void Context::stop_if_requested(std::string_view stage) const {
    if (stop.stop_requested()) {
        throw Error(Error::Kind::cancelled, std::string(stage) + ": cancelled");
    }
}

CheckPointScope Context::follow_calls() const {
    if (!can_end_calls()) {
        return CheckPointScope(nullptr);
    }
    return CheckPointScope(
        [this](const char* stage, long long done, long long all) { report(stage, done, all); });
}

void Context::warn(const std::string& message) const {
    if (on_warning) {
        on_warning(message);
    }
}

} // namespace korvel::kit
