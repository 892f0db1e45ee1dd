# Libraries that only tests use and that bring no CMake package of their own.

find_library(rapidcheck_library rapidcheck REQUIRED)
find_path(rapidcheck_headers rapidcheck/gtest.h REQUIRED)
add_library(rapidcheck INTERFACE)
target_include_directories(rapidcheck SYSTEM INTERFACE "${rapidcheck_headers}")
target_link_libraries(rapidcheck INTERFACE "${rapidcheck_library}")
set(ZELKOVAN_RAPIDCHECK rapidcheck)

find_library(mpfr_library mpfr REQUIRED)
find_library(gmp_library gmp REQUIRED)
find_path(mpfr_headers mpfr.h REQUIRED)
add_library(mpfr INTERFACE)
target_include_directories(mpfr SYSTEM INTERFACE "${mpfr_headers}")
target_link_libraries(mpfr INTERFACE "${mpfr_library}" "${gmp_library}")
