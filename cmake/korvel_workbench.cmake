# Whether the desktop program is built: with AUTO where its packages are, and left out with a message
# elsewhere. Sets `korvel_has_workbench`.

set(korvel_has_workbench OFF)
if(WIN32 OR CMAKE_CROSSCOMPILING OR NOT KORVEL_BUILD_WORKBENCH)
    return()
endif()
set(qt_package "qt6-base-dev and libqt6opengl6-dev")
find_package(Qt6 6.4 QUIET COMPONENTS Widgets OpenGLWidgets Test)
if(NOT Qt6_FOUND AND KORVEL_BUILD_WORKBENCH STREQUAL "AUTO")
    message(STATUS "korvel-workbench is left out: Qt 6 was not found (on Debian ${qt_package})")
    return()
endif()
korvel_require(Qt6_FOUND "Qt 6" PACKAGE "${qt_package}" OPTION KORVEL_BUILD_WORKBENCH)
set(korvel_has_workbench ON)
add_subdirectory(apps/workbench)
