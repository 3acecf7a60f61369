# Selects the implementation of each interface in src/platform for this system.
include(CheckCXXSymbolExists)

if(NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
    message(FATAL_ERROR "src/platform has no folder for ${CMAKE_SYSTEM_NAME} yet")
endif()

# The folders with tests of their own.
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

# Returning free memory depends on the allocator, and so on the C library.
check_cxx_symbol_exists(__GLIBC__ features.h MORVEL_HAS_GLIBC)
if(MORVEL_HAS_GLIBC)
    list(APPEND MORVEL_PLATFORM_SOURCES src/platform/glibc/free_memory.cpp)
else()
    list(APPEND MORVEL_PLATFORM_SOURCES src/platform/generic/free_memory.cpp)
endif()
