#include "korvel/platform/plain_reading.h"

namespace korvel {
namespace {

thread_local ThreadOverride<bool>* thread_reading = nullptr;

} // namespace

PlainReading::PlainReading() : override_(thread_reading, true) {}

PlainReading::~PlainReading() = default;

void report_odd_number() {
    if (thread_reading != nullptr) {
        thread_reading->value = false;
    }
}

} // namespace korvel
