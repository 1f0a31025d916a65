# cmake -D PROGRAM=… -D WORK_DIR=… -D OUTPUTS=… -D ARGUMENTS=… -P run.cmake

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
execute_process(
    COMMAND ${PROGRAM} ${ARGUMENTS}
    WORKING_DIRECTORY ${WORK_DIR}
    COMMAND_ECHO STDOUT
    COMMAND_ERROR_IS_FATAL ANY
)
foreach(output IN LISTS OUTPUTS)
    if(NOT EXISTS ${WORK_DIR}/${output})
        message(FATAL_ERROR "${output} was not written")
    endif()
    file(SIZE ${WORK_DIR}/${output} bytes)
    if(bytes EQUAL 0)
        message(FATAL_ERROR "${output} is empty")
    endif()
endforeach()

# Without the arguments that it needs a program prints its usage and fails.
if(NOT ARGUMENTS)
    return()
endif()
execute_process(COMMAND ${PROGRAM} RESULT_VARIABLE status ERROR_VARIABLE usage)
if(NOT status EQUAL 1 OR NOT usage MATCHES "^usage: ")
    message(FATAL_ERROR "without arguments: exit status ${status}, ${usage}")
endif()
