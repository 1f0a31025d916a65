#include "apps/command/map_view.h"

#include "apps/command/arguments.h"

namespace korvel::command {

void MapView::add_options(CLI::App& command) {
    command.add_option("--view", view_, "Two opposite corners of what the picture shows")
        ->type_name("X,Y,X,Y");
    command
        .add_option("--stretch", stretch_,
                    "Paint a unit of x this many times as long as a unit of y")
        ->type_name("F")
        ->capture_default_str();
}

void MapView::check() const {
    check_stretch(stretch_);
    if (!view_.empty()) {
        parse_box("--view", view_);
    }
}

kit::MapPictureOptions MapView::options() const {
    kit::MapPictureOptions options;
    options.stretch = stretch_;
    if (!view_.empty()) {
        options.part = parse_box("--view", view_);
    }
    return options;
}

} // namespace korvel::command
