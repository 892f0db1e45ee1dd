# What is left out where a program or a library is missing is said in one place, so that a build can refuse to leave
# anything out, as scripts/check-complete does, and ./test can say it again in its last lines: from left-out.txt in the build
# folder, a line each.

option(ZELKOVAN_REQUIRE_ALL "Fail where a part, a test or a benchmark would be left out" OFF)

# zelkovan_absent(what): "the SQLite extension is left out: ...". The caller returns.
function(zelkovan_absent what)
    if(ZELKOVAN_REQUIRE_ALL)
        message(FATAL_ERROR "${what} (ZELKOVAN_REQUIRE_ALL is on)")
    endif()
    message(STATUS "${what}")
    file(APPEND "${CMAKE_BINARY_DIR}/left-out.txt" "${what}\n")
endfunction()

file(WRITE "${CMAKE_BINARY_DIR}/left-out.txt" "")
