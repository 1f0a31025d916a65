# cmake -D BUILD_DIR=… -D CONFIG=… -D PROGRAM_DIR=… -D CXX_COMPILER=… -D CXX_FLAGS=…
#       -D GENERATOR=… -P run.cmake

function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# A temporary directory, which stays when a step fails.
set(temporary /tmp)
foreach(variable IN ITEMS TMPDIR TEMP)
    if(DEFINED ENV{${variable}})
        set(temporary $ENV{${variable}})
        break()
    endif()
endforeach()
string(RANDOM LENGTH 12 suffix)
set(work_dir ${temporary}/korvel-package-${suffix})
set(prefix ${work_dir}/prefix)

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix} --config ${CONFIG})
run(
    ${CMAKE_COMMAND} -S ${PROGRAM_DIR} -B ${work_dir}/build -G ${GENERATOR}
    -DCMAKE_BUILD_TYPE=${CONFIG} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
    -DCMAKE_CXX_FLAGS=${CXX_FLAGS} -DCMAKE_PREFIX_PATH=${prefix}
)
run(${CMAKE_COMMAND} --build ${work_dir}/build --config ${CONFIG})
run(${CMAKE_CTEST_COMMAND} --test-dir ${work_dir}/build -C ${CONFIG} --output-on-failure)

file(GLOB command ${prefix}/bin/korvel*)
if(command)
    run(${command} --help)
endif()

file(REMOVE_RECURSE ${work_dir})
