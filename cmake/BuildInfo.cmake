# What the build says of itself: release, time, hash, host. With SOURCE_DATE_EPOCH set nothing of the moment or the
# machine gets in, and two builds of one source agree byte for byte.

string(TIMESTAMP ZELKOVAN_BUILD_SECONDS "%s" UTC)
string(TIMESTAMP ZELKOVAN_BUILD_DATE "%b %d %Y" UTC)
string(TIMESTAMP ZELKOVAN_BUILD_TIME "%a %b %d %H:%M:%S UTC %Y" UTC)

if(DEFINED ENV{SOURCE_DATE_EPOCH})
    set(build_host "reproducible")
else()
    cmake_host_system_information(RESULT build_host QUERY HOSTNAME)
endif()

set(build_hash "unversioned")
set(build_branch "unversioned")
find_package(Git QUIET)
if(GIT_FOUND)
    execute_process(COMMAND "${GIT_EXECUTABLE}" rev-parse HEAD WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
                    OUTPUT_VARIABLE hash OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE no_hash)
    execute_process(COMMAND "${GIT_EXECUTABLE}" rev-parse --abbrev-ref HEAD WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
                    OUTPUT_VARIABLE branch OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE no_branch)
    if(no_hash EQUAL 0 AND no_branch EQUAL 0)
        set(build_hash "${hash}")
        set(build_branch "${branch}")
    endif()
endif()

# The one line that packages, pages and programs say of the license; its text is in LICENSE.
set(ZELKOVAN_LICENSE "Copyright 2026 the zelkovan authors. MIT license.")

set(ZELKOVAN_SHORT_VERSION "${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}0")
set(ZELKOVAN_RELEASE "${ZELKOVAN_SHORT_VERSION}.0${PROJECT_VERSION_PATCH}A0B000000" CACHE STRING "Release string")
set(ZELKOVAN_BUILD_HOST "${build_host}" CACHE STRING "Build host name in the version record")
set(ZELKOVAN_BUILD_HASH "${build_hash}")
set(ZELKOVAN_SOURCE_BRANCH "${build_branch}")
set(ZELKOVAN_BUILD_IDENTIFIER "${PROJECT_NAME}-${PROJECT_VERSION}")
math(EXPR ZELKOVAN_BUILD_NUMBER
     "${PROJECT_VERSION_MAJOR} * 10000 + ${PROJECT_VERSION_MINOR} * 100 + ${PROJECT_VERSION_PATCH}")

configure_file("${CMAKE_CURRENT_SOURCE_DIR}/module/build_info.h.in" "${CMAKE_BINARY_DIR}/generated/build_info.h" @ONLY)
