# What is installed of the libraries: themselves, their public headers, and what CMake and pkg-config
# find them by. The command is installed by apps/command.

include(CMakePackageConfigHelpers)

# Two minor versions can be installed side by side.
set(korvel_include_dir
    ${CMAKE_INSTALL_INCLUDEDIR}/korvel-${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
)
set(korvel_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/korvel)
get_target_property(library_type korvel TYPE)
set(korvel_is_static FALSE)
if(library_type STREQUAL "STATIC_LIBRARY")
    set(korvel_is_static TRUE)
endif()

# korvel_install_libraries(EXPORT target…)
function(korvel_install_libraries export)
    install(
        TARGETS ${ARGN}
        EXPORT ${export}
        RUNTIME COMPONENT runtime
        LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development
        FILE_SET HEADERS DESTINATION ${korvel_include_dir} COMPONENT development
    )
    install(
        EXPORT ${export}
        NAMESPACE korvel::
        DESTINATION ${korvel_cmake_dir}
        COMPONENT development
    )
endfunction()

# korvel_install_pkgconfig(NAME TARGET target DESCRIPTION text [REQUIRES name…] [STATIC module…]
# [CFLAGS flag…]): installs NAME.pc. The modules are what hosts of a static library link as well: not as
# private ones, which would make pkg-config --static link those statically that are shared libraries.
function(korvel_install_pkgconfig name)
    cmake_parse_arguments(PARSE_ARGV 1 pc "" "TARGET;DESCRIPTION" "REQUIRES;STATIC;CFLAGS")
    file(
        RELATIVE_PATH prefix_from_pc ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX}
    )
    string(REGEX REPLACE "/$" "" prefix_from_pc ${prefix_from_pc})
    if(korvel_is_static)
        list(APPEND pc_CFLAGS -DKORVEL_STATIC)
        list(APPEND pc_REQUIRES ${pc_STATIC})
    endif()
    foreach(field IN ITEMS REQUIRES CFLAGS)
        list(JOIN pc_${field} " " pc_${field})
    endforeach()
    configure_file(${PROJECT_SOURCE_DIR}/cmake/pkgconfig.pc.in ${name}.pc @ONLY)
    install(
        FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development
    )
endfunction()

korvel_install_libraries(korvelTargets korvel_platform korvel)
korvel_install_pkgconfig(
    korvel_platform
    TARGET korvel_platform
    DESCRIPTION "The portable application framework that korvel uses"
    CFLAGS -ffp-contract=off ${korvel_framework_flags}
)
korvel_install_pkgconfig(
    korvel
    TARGET korvel
    DESCRIPTION "${PROJECT_DESCRIPTION}"
    REQUIRES korvel_platform
    STATIC gl
)

set(korvel_components "")
if(KORVEL_BUILD_KIT)
    set(korvel_components kit ${korvel_kit_parts})
    set(kit_modules gl)
    set(kit_definitions "")
    foreach(part IN LISTS korvel_kit_parts)
        string(TOUPPER -Dkorvel_has_${part} definition)
        list(APPEND kit_modules ${korvel_${part}_modules})
        list(APPEND kit_definitions ${definition})
    endforeach()
    korvel_install_libraries(korvelKitTargets korvel_kit)
    korvel_install_pkgconfig(
        korvel-kit
        TARGET korvel_kit
        DESCRIPTION "What host programs need on top of korvel's exact classes"
        REQUIRES korvel
        STATIC ${kit_modules}
        CFLAGS ${kit_definitions}
    )
endif()

write_basic_package_version_file(korvelConfigVersion.cmake COMPATIBILITY SameMinorVersion)
configure_file(cmake/korvelConfig.cmake.in korvelConfig.cmake @ONLY)
install(
    FILES ${CMAKE_CURRENT_BINARY_DIR}/korvelConfig.cmake
          ${CMAKE_CURRENT_BINARY_DIR}/korvelConfigVersion.cmake
    DESTINATION ${korvel_cmake_dir}
    COMPONENT development
)
