#include "apps/command/map_view.h"

#include "apps/command/arguments.h"

namespace korvel::command {

void MapView::add_options(Options options) {
    options.add("--view", view_, "X,Y,X,Y", "Two opposite corners of what the picture shows");
    options.add_flag("--y-down", y_down_, "For data whose y grows downward");
    options
        .add("--stretch", stretch_, "F", "Paint a unit of x this many times as long as a unit of y")
        .with_default();
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
    options.y_down = y_down_;
    if (!view_.empty()) {
        options.part = parse_box("--view", view_);
    }
    return options;
}

} // namespace korvel::command
