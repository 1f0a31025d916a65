# Messages about packages that are missing and options that do not go together.

# korvel_find_package(NAME PACKAGE package [OPTION option]): find_package, where `package` is the
# Debian package that contains it and `option` leaves out what needs it.
macro(korvel_find_package name)
    find_package(${name} QUIET)
    korvel_require(${name}_FOUND ${name} ${ARGN})
endmacro()

# korvel_find_modules(NAME PACKAGE package OPTION option MODULES module…): the same with the
# modules of pkg-config, as the target PkgConfig::korvel_NAME.
macro(korvel_find_modules name)
    cmake_parse_arguments(find "" "PACKAGE;OPTION" "MODULES" ${ARGN})
    korvel_find_package(PkgConfig PACKAGE pkg-config OPTION ${find_OPTION})
    pkg_check_modules(korvel_${name} QUIET IMPORTED_TARGET ${find_MODULES})
    korvel_require(korvel_${name}_FOUND ${name} PACKAGE ${find_PACKAGE} OPTION ${find_OPTION})
endmacro()

# korvel_find_headers(NAME TARGET target FOLDER folder PACKAGE package OPTION option): the same for a
# package of headers alone. A cross-compiler gets a copy, because it may not search the build machine's
# folder of headers.
macro(korvel_find_headers name)
    cmake_parse_arguments(headers "" "TARGET;FOLDER;PACKAGE;OPTION" "" ${ARGN})
    if(NOT CMAKE_CROSSCOMPILING)
        korvel_find_package(${name} PACKAGE ${headers_PACKAGE} OPTION ${headers_OPTION})
    elseif(NOT TARGET ${headers_TARGET})
        find_path(korvel_${name} ${headers_FOLDER} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
        korvel_require(korvel_${name} ${name} PACKAGE ${headers_PACKAGE} OPTION ${headers_OPTION})
        file(COPY ${korvel_${name}}/${headers_FOLDER} DESTINATION ${PROJECT_BINARY_DIR}/headers)
        add_library(${headers_TARGET} INTERFACE IMPORTED)
        target_include_directories(${headers_TARGET} INTERFACE ${PROJECT_BINARY_DIR}/headers)
    endif()
endmacro()

function(korvel_require found what)
    if(${found})
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 2 need "" "PACKAGE;OPTION" "")
    set(leave_out "")
    if(need_OPTION)
        set(leave_out ", or leave out what needs it with -D${need_OPTION}=OFF")
    endif()
    message(
        FATAL_ERROR "korvel: ${what} was not found. Install it (on Debian the package "
                    "${need_PACKAGE})${leave_out}."
    )
endfunction()

# Stops when an option is on and one that it needs is off.
function(korvel_check_option option)
    if(NOT ${option})
        return()
    endif()
    foreach(needed IN LISTS ARGN)
        if(NOT ${needed})
            message(
                FATAL_ERROR "korvel: ${option} needs ${needed}: switch both on, or both off with "
                            "-D${option}=OFF."
            )
        endif()
    endforeach()
endfunction()
