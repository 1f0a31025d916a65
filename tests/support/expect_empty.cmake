# cmake -D DIRECTORY=… -P expect_empty.cmake

file(GLOB files RELATIVE ${DIRECTORY} ${DIRECTORY}/*)
if(files)
    file(REMOVE_RECURSE ${DIRECTORY})
    file(MAKE_DIRECTORY ${DIRECTORY})
    message(FATAL_ERROR "tests wrote to ${DIRECTORY}: ${files}")
endif()
