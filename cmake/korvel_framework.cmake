# The application framework of the host in the place of korvel/platform's portable form of it.
# docs/windows.md lists what it must have.

set(KORVEL_FRAMEWORK_HEADER
    ""
    CACHE STRING "Header of the host's application framework, as it is included; empty for korvel's own"
)
set(KORVEL_FRAMEWORK_INCLUDE_DIRS "" CACHE STRING "Folders of KORVEL_FRAMEWORK_HEADER")
set(KORVEL_FRAMEWORK_LIBRARIES "" CACHE STRING "Libraries of the host's application framework")

if(KORVEL_FRAMEWORK_HEADER)
    foreach(option IN ITEMS KORVEL_BUILD_KIT KORVEL_BUILD_TESTS KORVEL_BUILD_BENCH KORVEL_BUILD_FUZZERS)
        if(${option})
            message(
                FATAL_ERROR "korvel: ${option} needs korvel's own application framework: leave out "
                            "KORVEL_FRAMEWORK_HEADER, or switch this off with -D${option}=OFF."
            )
        endif()
    endforeach()
endif()

# Hosts of the installed library get the definitions; the framework itself they have already.
function(korvel_use_framework target)
    if(NOT KORVEL_FRAMEWORK_HEADER)
        return()
    endif()
    set(header "${KORVEL_FRAMEWORK_HEADER}")
    if(NOT header MATCHES "^[<\"]")
        set(header "\"${header}\"")
    endif()
    target_compile_definitions(
        ${target}
        PUBLIC KORVEL_USE_HOST_FRAMEWORK "KORVEL_FRAMEWORK_HEADER=${header}"
    )
    set(korvel_framework_flags # for pkg-config
        -DKORVEL_USE_HOST_FRAMEWORK "-DKORVEL_FRAMEWORK_HEADER='${header}'"
        PARENT_SCOPE
    )
    # Records move only where arrays do.
    target_compile_options(
        ${target} PUBLIC "$<$<CXX_COMPILER_ID:Clang>:-Wno-defaulted-function-deleted>"
    )
    foreach(folder IN LISTS KORVEL_FRAMEWORK_INCLUDE_DIRS)
        target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${folder}>")
    endforeach()
    foreach(library IN LISTS KORVEL_FRAMEWORK_LIBRARIES)
        target_link_libraries(${target} PUBLIC "$<BUILD_INTERFACE:${library}>")
    endforeach()
endfunction()
