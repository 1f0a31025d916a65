# What test scripts share.

# run(command argument…)
function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# output_of(result command argument…)
function(output_of result)
    execute_process(
        COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE output COMMAND_ECHO STDOUT
        COMMAND_ERROR_IS_FATAL ANY
    )
    set(${result} "${output}" PARENT_SCOPE)
endfunction()

function(expect text pattern)
    if(NOT text MATCHES "${pattern}")
        message(FATAL_ERROR "does not match '${pattern}': ${text}")
    endif()
endfunction()

# temporary_directory(result name): a new one, which stays when a step fails.
function(temporary_directory result name)
    set(temporary /tmp)
    foreach(variable IN ITEMS TMPDIR TEMP)
        if(DEFINED ENV{${variable}})
            set(temporary $ENV{${variable}})
            break()
        endif()
    endforeach()
    string(RANDOM LENGTH 12 suffix)
    set(${result} ${temporary}/korvel-${name}-${suffix} PARENT_SCOPE)
endfunction()
