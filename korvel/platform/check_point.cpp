#include "korvel/platform/check_point.h"

#include <utility>

namespace korvel {
namespace {

thread_local ThreadOverride<check_point_function>* thread_function = nullptr;

} // namespace

CheckPointScope::CheckPointScope(check_point_function function)
    : override_(thread_function, std::move(function)) {}

CheckPointScope::~CheckPointScope() = default;

void check_point(const char* stage, long long done, long long all) {
    if (thread_function == nullptr || !thread_function->value) {
        return;
    }
    const check_point_function& function = thread_function->value;
    const CheckPointScope none_meanwhile(nullptr);
    function(stage, done, all);
}

} // namespace korvel
