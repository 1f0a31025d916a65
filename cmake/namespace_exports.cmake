# Writes a module definition file with all symbols of namespace korvel::kit that object files define:
# NM, OBJECTS, OUTPUT.

execute_process(
    COMMAND ${NM} --defined-only --extern-only --format=posix ${OBJECTS}
    OUTPUT_VARIABLE symbols
    COMMAND_ERROR_IS_FATAL ANY
)
# Functions, and data: tables of virtual functions and types. Not thunks, which are local to a DLL.
string(REGEX MATCHALL "_Z(NK?|TV?N|T[IS]N)6korvel3kit[^ \n]* [TRDBVW]" symbols "${symbols}")
list(REMOVE_DUPLICATES symbols)
list(SORT symbols)
set(definition "EXPORTS\n")
foreach(symbol IN LISTS symbols)
    string(REGEX MATCH "^[^ ]*" name "${symbol}")
    if(symbol MATCHES " T$")
        string(APPEND definition "    ${name}\n")
    else()
        string(APPEND definition "    ${name} DATA\n")
    endif()
endforeach()
file(WRITE ${OUTPUT} "${definition}")
