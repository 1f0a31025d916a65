# `cpack` makes up to four Debian packages: korvel, with the command and the shared libraries;
# korvel-workbench, with the desktop program; korvel-formats, with the kit's modules, so that the
# others do not need GDAL and PROJ; and korvel-dev, with what programs are built with. Configure with -DCMAKE_INSTALL_PREFIX=/usr.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The korvel developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/kit)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME korvel)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION math)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "Finds the closed regions of networks of curves, triangulates them, raises them to solids and cuts, draws and checks those: the command, and the shared libraries that it and other programs use."
)
get_property(modules GLOBAL PROPERTY korvel_modules)
if(modules)
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS korvel-formats)
endif()
set(CPACK_DEBIAN_FORMATS_PACKAGE_NAME korvel-formats)
set(CPACK_DEBIAN_FORMATS_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_FORMATS_DESCRIPTION
    "Lets korvel read and write shapefiles, GeoPackages and the other formats of GDAL, and transform coordinates between reference systems with PROJ."
)
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_NAME korvel-workbench)
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_RECOMMENDS ${CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS})
set(CPACK_COMPONENT_WORKBENCH_DESCRIPTION
    "Draws curves and finds their regions, raises these to solids, and turns, changes and cuts them, in a window."
)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME korvel-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Headers, libraries and the files by which CMake and pkg-config find korvel."
)
set(CPACK_COMPONENTS_ALL development)
if(KORVEL_BUILD_APPS OR NOT korvel_is_static)
    list(APPEND CPACK_COMPONENTS_ALL runtime)
endif()
if(modules)
    list(APPEND CPACK_COMPONENTS_ALL formats)
endif()
if(korvel_has_workbench)
    list(APPEND CPACK_COMPONENTS_ALL workbench)
endif()
if(korvel_is_static)
    set(needed libgl-dev)
    if(KORVEL_BUILD_KIT)
        foreach(part IN LISTS korvel_kit_parts)
            list(APPEND needed pkg-config ${korvel_${part}_package})
        endforeach()
        list(REMOVE_DUPLICATES needed)
    endif()
    list(JOIN needed ", " CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS)
else()
    set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
    set(CPACK_COMPONENT_FORMATS_DEPENDS runtime)
    set(CPACK_COMPONENT_WORKBENCH_DEPENDS runtime)
    set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
endif()
include(CPack)
