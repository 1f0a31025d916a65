# cmake -D KORVEL_DIR=… -D REFERENCE=… -D MAP=… -D GTEST_INCLUDE_DIRS=… -D CXX_COMPILER=…
#       -D GENERATOR=… -D TOOLCHAIN=… -D EMULATOR=… -D WORK_DIR=… -P run.cmake
#
# Builds korvel against the stand-in framework, and compares what a program prints with what the same
# program prints over korvel's own framework (REFERENCE). The build stays in WORK_DIR for the next time.

include(${CMAKE_CURRENT_LIST_DIR}/../support/steps.cmake)
file(MAKE_DIRECTORY ${WORK_DIR}/run)
string(REGEX REPLACE ";.*" "" gtest_include_dir "${GTEST_INCLUDE_DIRS}")

set(configure
    ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -G ${GENERATOR} -DKORVEL_DIR=${KORVEL_DIR}
    -DGTEST_INCLUDE_DIR=${gtest_include_dir} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
    -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0
    -DCMAKE_INSTALL_LIBDIR=lib
)
execute_process(
    COMMAND ${configure} -B ${WORK_DIR}/refused -DKORVEL_BUILD_KIT=ON RESULT_VARIABLE result
    ERROR_VARIABLE message OUTPUT_QUIET
)
expect("${result} ${message}" "^1 .*KORVEL_BUILD_KIT needs korvel's own")

run(${configure} -B ${WORK_DIR}/build)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${CMAKE_CTEST_COMMAND} --test-dir ${WORK_DIR}/build --output-on-failure)
run(${CMAKE_COMMAND} --install ${WORK_DIR}/build --prefix ${WORK_DIR}/installed)
foreach(file IN ITEMS cmake/korvel/korvelTargets.cmake pkgconfig/korvel_platform.pc)
    file(READ ${WORK_DIR}/installed/lib/${file} text)
    expect("${text}" "KORVEL_USE_HOST_FRAMEWORK")
endforeach()

set(suffix "")
if(TOOLCHAIN)
    set(suffix .exe)
endif()
foreach(program IN ITEMS ${REFERENCE} ${WORK_DIR}/build/bin/program${suffix})
    execute_process(
        COMMAND ${EMULATOR} ${program} ${MAP} WORKING_DIRECTORY ${WORK_DIR}/run
        OUTPUT_FILE ${WORK_DIR}/output COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY
    )
    if(program STREQUAL REFERENCE)
        file(RENAME ${WORK_DIR}/output ${WORK_DIR}/expected)
    endif()
endforeach()
run(${CMAKE_COMMAND} -E compare_files ${WORK_DIR}/output ${WORK_DIR}/expected)
