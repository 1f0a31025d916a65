#include "apps/command/map_view.h"

#include "apps/command/arguments.h"
#include "apps/command/messages.h"
#include "apps/command/report.h"

namespace korvel::command {

void MapView::add_options(Options options) {
    options.add_flag("--all", shows_all_,
                     "Show everything, not only the extent of 99 % of the points");
    options.add("--view", view_, "X,Y,X,Y", "Two opposite corners of what the picture shows")
        .excludes(options.option("--all"));
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
    options.extent = shows_all_ ? kit::Extent::all : kit::Extent::most;
    if (!view_.empty()) {
        options.part = parse_box("--view", view_);
    }
    return options;
}

void MapView::report_left_out(const kit::Map& map, kit::PictureSize size) const {
    kit::MapPictureOptions shown = options();
    shown.size = size;
    const int count = shown.part ? 0 : kit::regions_left_out(map, shown);
    if (count > 0) {
        print("the picture leaves out %s, in part or whole; --all shows everything",
              counted(count, "region").c_str());
        facts().set("left_out_of_picture", count);
    }
}

} // namespace korvel::command
