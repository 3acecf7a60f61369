# Flags for every target of the project: warnings, hardening, and sanitizers on request.

include(CheckCXXSourceRuns)

# Where the static libraries are installed, the program is linked with them: it starts faster and takes less memory.
# Whether this works also depends on the flags of the build: with many sanitizers, for example, a static program links
# but crashes at its start. So a test program is run with those flags; where it cannot run, linking is dynamic.
function(morvel_find_static_pie)
    if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
        set(MORVEL_HAS_STATIC_PIE OFF CACHE INTERNAL "Static programs work")
        return()
    endif()
    string(TOUPPER "${CMAKE_BUILD_TYPE}" config)
    set(flags "${CMAKE_CXX_COMPILER} ${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${config}}")
    string(APPEND flags " ${CMAKE_EXE_LINKER_FLAGS} ${CMAKE_EXE_LINKER_FLAGS_${config}}")
    if(NOT flags STREQUAL MORVEL_STATIC_PIE_FLAGS)
        unset(MORVEL_HAS_STATIC_PIE CACHE)
        set(MORVEL_STATIC_PIE_FLAGS "${flags}" CACHE INTERNAL "What MORVEL_HAS_STATIC_PIE was found with")
    endif()
    set(CMAKE_TRY_COMPILE_CONFIGURATION "${CMAKE_BUILD_TYPE}")
    set(CMAKE_REQUIRED_FLAGS "-fPIE")
    set(CMAKE_REQUIRED_LINK_OPTIONS "-static-pie")
    check_cxx_source_runs([[
        #include <exception>
        #include <iostream>
        #include <stdexcept>
        #include <string>
        int main(int argc, char** argv) {
            try {
                throw std::runtime_error(std::string(argv[0]) + std::string(argc, 'x'));
            } catch (const std::exception& error) {
                std::cout << error.what() << std::endl;
            }
            return 0;
        }
    ]] MORVEL_HAS_STATIC_PIE)
endfunction()
morvel_find_static_pie()

function(morvel_link_static_program target)
    if(MORVEL_STATIC_PROGRAM AND MORVEL_HAS_STATIC_PIE AND NOT MORVEL_SANITIZE)
        target_link_options(${target} PRIVATE -static-pie)
    endif()
endfunction()

function(morvel_compile_options target)
    if(BUILD_SHARED_LIBS)
        set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    else()
        target_compile_options(${target} PRIVATE -fPIE)
    endif()
    if(MORVEL_HARDENING AND NOT MORVEL_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fstack-protector-strong $<$<CONFIG:Release>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
        target_link_options(${target} PUBLIC LINKER:-z,relro LINKER:-z,now)
    endif()
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast
        -Wcast-align -Woverloaded-virtual -Wformat=2 -Wimplicit-fallthrough -Wunused)
    # A switch must list every enumerator, even with a default, so that no switch misses a new one.
    target_compile_options(${target} PRIVATE -Werror=switch -Werror=switch-enum)
    if(MORVEL_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(MORVEL_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=${MORVEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        if(MORVEL_SANITIZE MATCHES "undefined")
            target_compile_options(${target} PRIVATE -fsanitize=float-cast-overflow)
        endif()
        target_link_options(${target} PUBLIC -fsanitize=${MORVEL_SANITIZE})
    endif()
endfunction()
