# lib/zelkovan.so, bin/finance with its man page and completions, the C header of the host interface, a CMake package and
# a pkg-config file. The command finds the module at ../lib, so the folder is lib whatever the distribution calls its own.

include(CMakePackageConfigHelpers)

set(library_folder lib)
set(package_folder "${library_folder}/cmake/zelkovan")

install(TARGETS zelkovan LIBRARY DESTINATION "${library_folder}")
install(TARGETS finance RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(FILES abi/zelkovan.h DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zelkovan")

# Kept copies of what the catalogue makes: a test compares them.
install(FILES docs/finance.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES completions/finance.bash DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
        RENAME finance)
install(FILES completions/_finance DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions")

# zelkovan_development_files(MODULE_FOLDER PACKAGE_FOLDER PKGCONFIG_FOLDER OUTPUT): CMake package and pkg-config file of an
# installation with these folders, all below its prefix, into OUTPUT.
function(zelkovan_development_files module_folder package_folder pkgconfig_folder output)
    configure_package_config_file(cmake/zelkovanConfig.cmake.in "${output}/zelkovanConfig.cmake"
        INSTALL_DESTINATION "${package_folder}"
        PATH_VARS CMAKE_INSTALL_INCLUDEDIR module_folder)
    write_basic_package_version_file("${output}/zelkovanConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
    file(RELATIVE_PATH prefix_from_pkgconfig "/${pkgconfig_folder}" /)
    string(REGEX REPLACE "/$" "" prefix_from_pkgconfig "${prefix_from_pkgconfig}")
    configure_file(cmake/zelkovan.pc.in "${output}/zelkovan.pc" @ONLY)
endfunction()
zelkovan_development_files("${library_folder}" "${package_folder}" "${library_folder}/pkgconfig"
                           "${CMAKE_BINARY_DIR}/generated")

install(FILES "${CMAKE_BINARY_DIR}/generated/zelkovanConfig.cmake"
              "${CMAKE_BINARY_DIR}/generated/zelkovanConfigVersion.cmake"
        DESTINATION "${package_folder}")
install(FILES "${CMAKE_BINARY_DIR}/generated/zelkovan.pc" DESTINATION "${library_folder}/pkgconfig")
