# Which implementations of the interfaces in src/platform this system gets: each interface needs one.
include(CheckCXXSymbolExists)

if(NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
    message(FATAL_ERROR "src/platform has no folder for ${CMAKE_SYSTEM_NAME} yet")
endif()

# Those with tests of their own.
set(MORVEL_PLATFORM_FOLDERS posix linux)
set(MORVEL_PLATFORM_SOURCES
    src/platform/posix/files.cpp
    src/platform/posix/mapped_memory.cpp
    src/platform/posix/signals.cpp
    src/platform/posix/thread_end.cpp
    src/platform/linux/c_locale.cpp
    src/platform/linux/control_groups.cpp
    src/platform/linux/large_pages.cpp
    src/platform/linux/memory_limits.cpp
    src/platform/linux/stack.cpp
)

# That of the C library, whose allocator it is.
check_cxx_symbol_exists(__GLIBC__ features.h MORVEL_HAS_GLIBC)
if(MORVEL_HAS_GLIBC)
    list(APPEND MORVEL_PLATFORM_SOURCES src/platform/glibc/free_memory.cpp)
else()
    list(APPEND MORVEL_PLATFORM_SOURCES src/platform/generic/free_memory.cpp)
endif()
