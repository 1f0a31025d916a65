# cmake -D BUILD_DIR=… -D CONFIG=… -D PROGRAM_DIR=… -D CXX_COMPILER=… -D CXX_FLAGS=…
#       -D GENERATOR=… -D WITH_KIT=… -D WITH_MODULES=… -D AS_PACKAGE=… -D TOOLCHAIN=… -D EMULATOR=… -P run.cmake
#
# Installs the build into a temporary directory, by way of its packages where wanted (DEB, or ZIP for
# Windows); builds and runs programs of another project against it, by CMake and by pkg-config; and
# tries what is installed with the command.

include(${CMAKE_CURRENT_LIST_DIR}/../support/steps.cmake)
temporary_directory(work_dir package)
set(prefix ${work_dir}/moved) # nothing may depend on where it was installed first

if(AS_PACKAGE)
    run(${CMAKE_CPACK_COMMAND} -G ${AS_PACKAGE} -C ${CONFIG} -B ${work_dir}/packages --config
        ${BUILD_DIR}/CPackConfig.cmake)
endif()
if(AS_PACKAGE STREQUAL "ZIP")
    file(GLOB package ${work_dir}/packages/*.zip)
    file(ARCHIVE_EXTRACT INPUT ${package} DESTINATION ${work_dir}/root)
    cmake_path(GET package STEM LAST_ONLY name)
    file(RENAME ${work_dir}/root/${name} ${prefix})
elseif(AS_PACKAGE)
    file(GLOB packages ${work_dir}/packages/*.deb)
    foreach(package IN LISTS packages)
        run(dpkg-deb --extract ${package} ${work_dir}/root)
        output_of(control dpkg-deb --field ${package})
        if(package MATCHES "/korvel_")
            expect("${control}" "Depends: [^\n]*libc6 [^\n]*libcairo2")
            if(control MATCHES "Depends: [^\n]*(gdal|libproj)")
                message(FATAL_ERROR "korvel itself must not need what its modules need: ${control}")
            endif()
        elseif(package MATCHES "/korvel-formats_")
            expect("${control}" "Depends: [^\n]*libgdal[^\n]*libproj")
        else()
            expect("${control}" "Depends: korvel \\(= ")
        endif()
    endforeach()
    file(RENAME ${work_dir}/root/usr ${prefix})
else()
    run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${work_dir}/first --config ${CONFIG})
    file(RENAME ${work_dir}/first ${prefix})
endif()

set(where "")
if(TOOLCHAIN) # which searches packages in the folders of the other system alone
    set(where -Dkorvel_DIR=${prefix}/lib/cmake/korvel)
endif()
set(projects ${PROGRAM_DIR})
if(WITH_KIT AND NOT TOOLCHAIN)
    list(APPEND projects ${PROGRAM_DIR}/../../examples)
endif()
foreach(project IN LISTS projects)
    cmake_path(GET project FILENAME name)
    set(build_dir ${work_dir}/build-${name})
    run(
        ${CMAKE_COMMAND} -S ${project} -B ${build_dir} -G ${GENERATOR}
        -DCMAKE_BUILD_TYPE=${CONFIG} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
        -DCMAKE_CXX_FLAGS=${CXX_FLAGS} -DCMAKE_PREFIX_PATH=${prefix} -DWITH_KIT=${WITH_KIT}
        -DWITH_MODULES=${WITH_MODULES}
        -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} ${where}
    )
    run(${CMAKE_COMMAND} --build ${build_dir} --config ${CONFIG})
    run(${CMAKE_CTEST_COMMAND} --test-dir ${build_dir} -C ${CONFIG} --output-on-failure)
endforeach()

# build_with_pkgconfig(program module): the program of main.cpp or kit_main.cpp.
function(build_with_pkgconfig program module)
    separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS}")
    output_of(module_flags ${PKG_CONFIG} --cflags --libs ${module})
    string(STRIP "${module_flags}" module_flags)
    separate_arguments(module_flags UNIX_COMMAND "${module_flags}")
    set(built ${work_dir}/by-pkg-config-${module})
    run(${CXX_COMPILER} -std=c++20 ${flags} ${PROGRAM_DIR}/${program}.cpp ${module_flags}
        -Wl,-rpath,${lib_dir} -o ${built})
    run(${built} ${work_dir}/picture.png)
endfunction()

if(NOT TOOLCHAIN)
    find_program(PKG_CONFIG pkg-config)
endif()
file(GLOB_RECURSE module_file ${prefix}/korvel.pc)
cmake_path(GET module_file PARENT_PATH module_dir)
cmake_path(GET module_dir PARENT_PATH lib_dir)
if(PKG_CONFIG)
    set(ENV{PKG_CONFIG_PATH} ${module_dir})
    build_with_pkgconfig(main korvel)
    if(WITH_KIT)
        build_with_pkgconfig(kit_main korvel-kit)
    endif()
endif()

if(EXISTS ${prefix}/bin/korvel.exe)
    run(${EMULATOR} ${prefix}/bin/korvel.exe --version)
endif()
if(EXISTS ${prefix}/bin/korvel)
    run(${prefix}/bin/korvel --version)
    foreach(file IN ITEMS bash-completion/completions/korvel zsh/site-functions/_korvel
                          fish/vendor_completions.d/korvel.fish)
        file(READ ${prefix}/share/${file} script)
        expect("${script}" "triangles")
    endforeach()
endif()
if(EXISTS ${prefix}/bin/korvel-workbench) # answers without a display
    run(${prefix}/bin/korvel-workbench --version)
    foreach(file IN ITEMS applications/korvel-workbench.desktop mime/packages/korvel.xml
                          icons/hicolor/48x48/apps/korvel-workbench.png
                          korvel/samples/us-states.curves)
        if(NOT EXISTS ${prefix}/share/${file})
            message(FATAL_ERROR "share/${file} was not installed")
        endif()
    endforeach()
endif()
find_program(GROFF groff)
if(GROFF AND EXISTS ${prefix}/share/man/man1/korvel.1)
    # With its warnings, of which there are none.
    output_of(page ${GROFF} -man -ww -Tascii -P-cbou ${prefix}/share/man/man1/korvel.1)
    expect("${page}" "KORVEL STARTER.*--rounds.*EXAMPLES")
    if(page MATCHES "troff[^\n]*: warning")
        message(FATAL_ERROR "the manual page is not sound: ${page}")
    endif()
endif()

file(REMOVE_RECURSE ${work_dir})
