# cmake -D KORVEL_DIR=… -D REFERENCE=… -D MAP=… -D GTEST_INCLUDE_DIRS=… -D CXX_COMPILER=…
#       -D GENERATOR=… -D TOOLCHAIN=… -D EMULATOR=… -P run.cmake
#
# Builds korvel against the stand-in framework, and compares what a program prints with what the same
# program prints over korvel's own framework (REFERENCE).

include(${CMAKE_CURRENT_LIST_DIR}/../support/steps.cmake)
temporary_directory(work_dir host-framework)
file(MAKE_DIRECTORY ${work_dir}/run)

set(configure
    ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -G ${GENERATOR} -DKORVEL_DIR=${KORVEL_DIR}
    -DGTEST_INCLUDE_DIRS=${GTEST_INCLUDE_DIRS} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
    -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O1
)
execute_process(
    COMMAND ${configure} -B ${work_dir}/refused -DKORVEL_BUILD_KIT=ON RESULT_VARIABLE result
    ERROR_VARIABLE message OUTPUT_QUIET
)
expect("${result} ${message}" "^1 .*KORVEL_BUILD_KIT needs korvel's own")

run(${configure} -B ${work_dir}/build)
run(${CMAKE_COMMAND} --build ${work_dir}/build)
run(${CMAKE_CTEST_COMMAND} --test-dir ${work_dir}/build --output-on-failure)
set(suffix "")
if(TOOLCHAIN)
    set(suffix .exe)
endif()
foreach(program IN ITEMS ${REFERENCE} ${work_dir}/build/bin/program${suffix})
    execute_process(
        COMMAND ${EMULATOR} ${program} ${MAP} WORKING_DIRECTORY ${work_dir}/run
        OUTPUT_FILE ${work_dir}/output COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY
    )
    if(program STREQUAL REFERENCE)
        file(RENAME ${work_dir}/output ${work_dir}/expected)
    endif()
endforeach()
run(${CMAKE_COMMAND} -E compare_files ${work_dir}/output ${work_dir}/expected)

file(REMOVE_RECURSE ${work_dir})
