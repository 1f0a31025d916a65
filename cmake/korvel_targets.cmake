# What all our own targets have in common. Targets of other projects are left alone.
function(korvel_own_target target)
    set_target_properties(
        ${target}
        PROPERTIES
            CXX_STANDARD 20
            CXX_STANDARD_REQUIRED ON
            CXX_EXTENSIONS OFF
            CXX_VISIBILITY_PRESET hidden
            VISIBILITY_INLINES_HIDDEN "$<NOT:$<BOOL:${MINGW}>>" # else they are in no DLL
            POSITION_INDEPENDENT_CODE ON
            COMPILE_WARNING_AS_ERROR ${KORVEL_WERROR}
    )
    target_compile_options(
        ${target}
        PRIVATE "$<IF:$<CXX_COMPILER_ID:MSVC>,/W4,-Wall;-Wextra;-Wpedantic>"
    )
endfunction()

# The version of a DLL, which Windows shows. Compiler options do not suit the compiler of resources: it has
# a target of its own.
if(MINGW)
    enable_language(RC)
endif()
function(korvel_version_resource target)
    set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resource} @ONLY)
    add_library(${target}_version OBJECT ${resource})
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_version>)
endfunction()

# korvel_library(target HEADERS header…): what our libraries, and hosts that compile the inline parts
# of their headers, have in common. The headers are those that are installed.
function(korvel_library target)
    cmake_parse_arguments(PARSE_ARGV 1 library "" "" "HEADERS")
    add_library(korvel::${target} ALIAS ${target})
    korvel_own_target(${target})
    set_target_properties(
        ${target}
        PROPERTIES
            VERSION ${PROJECT_VERSION}
            SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
            INSTALL_RPATH "$ORIGIN"
    )
    list(TRANSFORM library_HEADERS PREPEND ${PROJECT_SOURCE_DIR}/)
    target_sources(
        ${target}
        PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${library_HEADERS}
    )
    target_compile_features(${target} PUBLIC cxx_std_20)
    # Two builds give the same digits only without fused multiply-adds.
    target_compile_options(
        ${target}
        PUBLIC "$<$<NOT:$<CXX_COMPILER_ID:MSVC>>:-ffp-contract=off>"
    )
    if(MINGW) # calls its own square root, which rounds twice, where nothing is optimised
        target_compile_options(${target} PRIVATE "$<$<CONFIG:Debug>:-Og;-fno-math-errno>")
    endif()
    if(NOT MSVC AND NOT KORVEL_FRAMEWORK_HEADER) # whose arrays may count in longer integers
        target_compile_options(${target} PRIVATE -Wconversion -Wno-sign-conversion)
    endif()
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "STATIC_LIBRARY")
        target_compile_definitions(${target} PUBLIC KORVEL_STATIC)
    else()
        string(TOUPPER ${target}_BUILDING building)
        target_compile_definitions(${target} PRIVATE ${building})
        # Symbols that g++ makes unique to the process would keep the library from being unloaded.
        target_compile_options(${target} PRIVATE "$<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>")
        if(MINGW)
            korvel_version_resource(${target})
        endif()
    endif()
endfunction()
