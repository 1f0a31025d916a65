#include "apps/command/fill_choice.h"

namespace korvel::command {

void FillChoice::add_option(Options options, const std::string& purpose) {
    options.add("--fill", name_, "auto|front|delaunay", purpose)
        .one_of({"auto", "front", "delaunay"})
        .with_default();
}

kit::Fill FillChoice::fill() const {
    return name_ == "front"      ? kit::Fill::front
           : name_ == "delaunay" ? kit::Fill::delaunay
                                 : kit::Fill::automatic;
}

void add_threads_option(Options options, int& threads) {
    options.add("--threads", threads, "N", "Work on N threads; 0: one for each core")
        .from_to(0, 1024)
        .with_default();
}

} // namespace korvel::command
