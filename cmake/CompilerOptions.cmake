# Language level, warnings, floating-point rules and sanitizers, for every target of ours through zelkovan_options.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

set(ZELKOVAN_SANITIZE "" CACHE STRING "Sanitizers, as a list: address;undefined;float-cast-overflow or thread")

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

find_program(ZELKOVAN_CCACHE ccache)
if(ZELKOVAN_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Precompiled headers of the tests are kept too: none of them asks for the time.
    set(CMAKE_C_COMPILER_LAUNCHER env CCACHE_SLOPPINESS=pch_defines,time_macros "${ZELKOVAN_CCACHE}")
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_C_COMPILER_LAUNCHER})
endif()

add_library(zelkovan_options INTERFACE)

set(warnings -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wfloat-conversion -Werror)

# Results are the same bits whatever a builder adds: these come after the builder's flags and win. No square root has to
# set errno: it is one instruction.
set(floating_point -fno-fast-math -ffp-contract=off -fno-math-errno)
if(NOT ZELKOVAN_WEB)
    list(APPEND floating_point -msse2 -mfpmath=sse)
endif()

target_compile_options(zelkovan_options INTERFACE
    $<$<COMPILE_LANGUAGE:C,CXX>:${warnings}>
    $<$<COMPILE_LANGUAGE:C,CXX>:${floating_point}>
    "$<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.>"
    "$<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${CMAKE_BINARY_DIR}=build>")
target_link_options(zelkovan_options INTERFACE -fno-fast-math)

# The browser has walls of its own.
if(ZELKOVAN_WEB)
    return()
endif()

# A fault of ours that writes where it must not ends the process, or finds nothing to jump to: the addresses of other
# libraries' routines are looked up at load and then read-only, no page is both written and run, jumps and returns land
# where the code says (where processor and system watch it), and a canary lies behind what could be written past.
target_compile_options(zelkovan_options INTERFACE -fcf-protection=full)
target_link_options(zelkovan_options INTERFACE LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)

# The module has canaries where there is an array of bytes; one in every routine that takes an address costs a call 2.5 ns,
# a tenth of a short one. Everything else has them all, and the C library's routines check the sizes that the compiler
# knows. Without optimisation it knows none, and sanitizers look closer.
set(module_code "$<BOOL:$<TARGET_PROPERTY:ZELKOVAN_MODULE_CODE>>")
set(checks_sizes "$<AND:$<NOT:${module_code}>,$<NOT:$<CONFIG:Debug>>,$<COMPILE_LANGUAGE:C,CXX>>")
set(fortify_level 2)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12)
    set(fortify_level 3)
endif()
target_compile_options(zelkovan_options INTERFACE
    "$<$<COMPILE_LANGUAGE:C,CXX>:$<IF:${module_code},-fstack-protector,-fstack-protector-strong>>")
if(NOT ZELKOVAN_SANITIZE)
    target_compile_options(zelkovan_options INTERFACE
        "$<${checks_sizes}:-U_FORTIFY_SOURCE>" "$<${checks_sizes}:-D_FORTIFY_SOURCE=${fortify_level}>")
endif()

if(ZELKOVAN_SANITIZE)
    list(JOIN ZELKOVAN_SANITIZE "," sanitizers)
    set(sanitizer_flags "-fsanitize=${sanitizers}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(zelkovan_options INTERFACE "$<$<COMPILE_LANGUAGE:C,CXX>:${sanitizer_flags}>")
    target_link_options(zelkovan_options INTERFACE ${sanitizer_flags})
endif()

# What programs built by others need in their environment to load a library of ours: with the address sanitizer its
# runtime, before all else (clang's has the undefined one's within). Leaks are looked for where programs are ours, the
# engines' own not being ours to mend; a second library with the same code in one process is meant.
set(ZELKOVAN_RUNTIME "")
set(ZELKOVAN_FOREIGN_PROGRAM "")
if("address" IN_LIST ZELKOVAN_SANITIZE)
    set(runtime libclang_rt.asan-${CMAKE_SYSTEM_PROCESSOR}.so)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        set(runtime libasan.so)
    endif()
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${runtime}"
                    OUTPUT_VARIABLE ZELKOVAN_RUNTIME OUTPUT_STRIP_TRAILING_WHITESPACE)
    set(ZELKOVAN_FOREIGN_PROGRAM "LD_PRELOAD=${ZELKOVAN_RUNTIME}" "ASAN_OPTIONS=detect_leaks=0:detect_odr_violation=0")
endif()
