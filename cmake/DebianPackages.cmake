# Debian packages of one build: cmake --build BUILD --target packages, into BUILD/packages. A package is an install
# component of its name, which an installation without components leaves alone: places are the distribution's own, and so
# are made on Debian only. Adapters say what their packages hold in their own folders.

find_program(ZELKOVAN_DPKG_SHLIBDEPS dpkg-shlibdeps)
if(NOT ZELKOVAN_DPKG_SHLIBDEPS OR NOT CMAKE_LIBRARY_ARCHITECTURE)
    zelkovan_absent("Debian packages are left out: dpkg-shlibdeps (dpkg-dev) or the architecture's library folder not found")
    return()
endif()

set(packaging "${CMAKE_SOURCE_DIR}/packaging/debian")
set(made "${CMAKE_BINARY_DIR}/packaging")

# The changelog says which revision this is.
file(STRINGS "${packaging}/changelog" first_line LIMIT_COUNT 1)
if(NOT first_line MATCHES "^zelkovan \\(${PROJECT_VERSION}-([0-9]+)\\) ")
    message(FATAL_ERROR "packaging/debian/changelog does not begin with zelkovan (${PROJECT_VERSION}-...)")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE "${CMAKE_MATCH_1}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
    "${packaging}/copyright.in" "${packaging}/copyright.cli11" "${CMAKE_SOURCE_DIR}/LICENSE")

# compressed(file name): the file as packages have it.
function(compressed file name)
    file(MAKE_DIRECTORY "${made}")
    execute_process(COMMAND gzip -9nc "${file}" OUTPUT_FILE "${made}/${name}" COMMAND_ERROR_IS_FATAL ANY)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
endfunction()
compressed("${packaging}/changelog" changelog.Debian.gz)
compressed("${CMAKE_SOURCE_DIR}/docs/finance.1" finance.1.gz)

# The license's paragraphs as the distribution writes them: a blank before each line, a dot in empty ones.
file(READ "${CMAKE_SOURCE_DIR}/LICENSE" license)
string(REGEX REPLACE "^.*\n\n(Permission .*)\n$" "\\1" license_paragraphs "${license}")
string(REPLACE "\n\n" "\n.\n" license_paragraphs "${license_paragraphs}")
string(REPLACE "\n" "\n " license_paragraphs " ${license_paragraphs}")

# zelkovan_package(NAME TARGETS targets... SECTION section DESCRIPTION summary and text [DEPENDS packages]
#                  [RECOMMENDS packages] [SUGGESTS packages] [CONTROL files...] [WORKS_OF_OTHERS file])
function(zelkovan_package name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "SECTION;DESCRIPTION;DEPENDS;RECOMMENDS;SUGGESTS;WORKS_OF_OTHERS"
                          "TARGETS;CONTROL")
    set(works_of_others "")
    if(arg_WORKS_OF_OTHERS)
        file(READ "${arg_WORKS_OF_OTHERS}" works_of_others)
    endif()
    configure_file("${packaging}/copyright.in" "${made}/${name}/copyright" @ONLY)
    install(FILES "${made}/changelog.Debian.gz" "${made}/${name}/copyright" DESTINATION "share/doc/${name}"
            COMPONENT ${name} EXCLUDE_FROM_ALL)
    if(EXISTS "${packaging}/overrides/${name}")
        install(FILES "${packaging}/overrides/${name}" DESTINATION share/lintian/overrides COMPONENT ${name}
                EXCLUDE_FROM_ALL)
    endif()

    string(TOUPPER "CPACK_DEBIAN_${name}" prefix)
    set(${prefix}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(${prefix}_DESCRIPTION "${arg_DESCRIPTION}" PARENT_SCOPE)
    set(${prefix}_PACKAGE_CONTROL_EXTRA "${arg_CONTROL}" PARENT_SCOPE)
    foreach(field SECTION DEPENDS RECOMMENDS SUGGESTS)
        set(${prefix}_PACKAGE_${field} "${arg_${field}}" PARENT_SCOPE)
    endforeach()
    set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${name} PARENT_SCOPE)
    set(packaged ${packaged} ${arg_TARGETS} PARENT_SCOPE)
endfunction()

set(CPACK_COMPONENTS_ALL "")
set(packaged "")
set(calculations "more than fifty financial calculations: accrued interest and coupon
schedules, bond prices and yields, annuities, internal rates, depreciation,
Treasury bills.")

# ---- Module and command. The module is no library that programs are linked with: it has a folder of its own, which the
# command knows (command/host_on_demand.hpp).

set(library_folder "lib/${CMAKE_LIBRARY_ARCHITECTURE}")
set(package_folder "${library_folder}/cmake/zelkovan")
zelkovan_development_files("${library_folder}/zelkovan" "${package_folder}" "${library_folder}/pkgconfig" "${made}")

set(component COMPONENT zelkovan EXCLUDE_FROM_ALL)
install(TARGETS zelkovan LIBRARY DESTINATION "${library_folder}/zelkovan" ${component})
install(TARGETS finance RUNTIME DESTINATION bin ${component})
install(FILES abi/zelkovan.h DESTINATION include/zelkovan ${component})
install(FILES "${made}/finance.1.gz" DESTINATION share/man/man1 ${component})
install(FILES completions/finance.bash DESTINATION share/bash-completion/completions RENAME finance ${component})
install(FILES completions/_finance DESTINATION share/zsh/vendor-completions ${component})
install(FILES "${made}/zelkovanConfig.cmake" "${made}/zelkovanConfigVersion.cmake" DESTINATION "${package_folder}"
        ${component})
install(FILES "${made}/zelkovan.pc" DESTINATION "${library_folder}/pkgconfig" ${component})
zelkovan_package(zelkovan TARGETS zelkovan finance SECTION math
    SUGGESTS "gnuplot-nox, bash-completion"
    WORKS_OF_OTHERS "${packaging}/copyright.cli11"
    DESCRIPTION "financial calculations for the command line and for host programs
The command finance answers
${calculations}
Calls stand on the command line, in scripts, or for each row of a table.
.
The same calculations are a module for data-analysis hosts, which load it
and call the function FINANCE; its header is here, and what CMake and
pkg-config need to find both.")

# ---- Engines, those that are built

if(TARGET zelkovan_postgresql)
    zelkovan_package(postgresql-15-zelkovan TARGETS zelkovan_postgresql SECTION database
        DEPENDS "postgresql-15"
        DESCRIPTION "financial calculations for PostgreSQL 15
An extension with a function for each of
${calculations}
Internal rates and present values are aggregates, too.")
endif()

if(TARGET zelkovan_sqlite)
    zelkovan_package(libsqlite3-mod-zelkovan TARGETS zelkovan_sqlite SECTION database
        DEPENDS "libsqlite3-0 (>= 3.31.0)" SUGGESTS "sqlite3"
        CONTROL "${packaging}/libsqlite3-mod-zelkovan/triggers"
        DESCRIPTION "financial calculations for SQLite 3
A loadable module with a function for each of
${calculations}
Internal rates and present values are aggregates, too.")
endif()

if(TARGET zelkovan_numpy AND ZELKOVAN_NUMPY_PACKAGES)
    zelkovan_package(python3-zelkovan TARGETS zelkovan_numpy_package SECTION python
        DEPENDS "${ZELKOVAN_NUMPY_PACKAGES}" SUGGESTS "python3-pandas, python3-dask"
        CONTROL "${packaging}/python3-zelkovan/postinst" "${packaging}/python3-zelkovan/prerm"
        DESCRIPTION "financial calculations for Python 3 and NumPy
A function over arrays for each of
${calculations}
They take Series of pandas and arrays of dask, too.")
endif()

# ---- What they have in common

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zelkovan)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "the zelkovan authors <zelkovan@users.noreply.example>")
set(CPACK_DEBIAN_PACKAGE_SOURCE zelkovan)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)

add_custom_target(packages
    COMMAND "${CMAKE_COMMAND}" -E rm -rf "${CPACK_PACKAGE_DIRECTORY}"
    COMMAND "${CMAKE_CPACK_COMMAND}" --config "${CMAKE_BINARY_DIR}/CPackConfig.cmake"
    COMMENT "Debian packages into ${CPACK_PACKAGE_DIRECTORY}" VERBATIM)
add_dependencies(packages ${packaged})
