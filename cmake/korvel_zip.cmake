# `cpack` makes one ZIP for Windows: DLLs, import libraries, headers, the CMake package, the examples,
# and the command where it is built.

install(
    DIRECTORY examples/
    DESTINATION ${CMAKE_INSTALL_DATADIR}/korvel/examples
    COMPONENT development
)
install(
    FILES data/us-states.curves # which examples read
    DESTINATION ${CMAKE_INSTALL_DATADIR}/korvel/data
    COMPONENT development
)
install(FILES docs/windows.md README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/korvel COMPONENT development)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME korvel-${PROJECT_VERSION}-windows-x86_64)
set(CPACK_STRIP_FILES ON)
include(CPack)
