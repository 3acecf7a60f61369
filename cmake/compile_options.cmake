# Flags of every target of the project: warnings, and sanitizers when asked for.

include(CheckCXXSourceCompiles)

# The program needs no shared library where the static ones are installed: it starts faster and takes less memory.
set(CMAKE_REQUIRED_FLAGS "-fPIE")
set(CMAKE_REQUIRED_LINK_OPTIONS "-static-pie")
check_cxx_source_compiles("#include <iostream>\nint main() { std::cout << 1; }" MORVEL_HAS_STATIC_PIE)
unset(CMAKE_REQUIRED_FLAGS)
unset(CMAKE_REQUIRED_LINK_OPTIONS)

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
