# cmake -D BUILD_DIR=… -D CONFIG=… -D PROGRAM_DIR=… -D WORK_DIR=… -D CXX_COMPILER=… -D CXX_FLAGS=…
#       -D GENERATOR=… -P run.cmake

function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix} --config ${CONFIG})
run(
    ${CMAKE_COMMAND} -S ${PROGRAM_DIR} -B ${WORK_DIR}/build -G ${GENERATOR}
    -DCMAKE_BUILD_TYPE=${CONFIG} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
    -DCMAKE_CXX_FLAGS=${CXX_FLAGS} -DCMAKE_PREFIX_PATH=${prefix}
)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build --config ${CONFIG})
run(${CMAKE_CTEST_COMMAND} --test-dir ${WORK_DIR}/build -C ${CONFIG} --output-on-failure)

file(GLOB command ${prefix}/bin/korvel*)
if(command)
    run(${command} --help)
endif()
