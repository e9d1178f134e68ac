# What `cmake --install` puts where, by component: `runtime` (the framework's libraries), `plugin`,
# `simulator`, `programs`, `development` (headers and what finds them), and if they are built `gstreamer` and `python`.

include_guard(GLOBAL)
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Below the library folder, and so found beside libPCd wherever that is.
set(PCD_INSTALL_PLUGINDIR "${CMAKE_INSTALL_LIBDIR}/pcd/plugins")
set(PCD_INSTALL_SIMDIR "${CMAKE_INSTALL_LIBDIR}/pcd/sim")
set(PCD_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/pcd")
set(PCD_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/PCd")

# pcd_install_library(TARGET SET): a library of the framework with its face, in the set of exported
# targets PCdSETTargets.
function(pcd_install_library name set)
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH "$ORIGIN")
    install(TARGETS ${name} EXPORT PCd${set}Targets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT development
        FILE_SET HEADERS DESTINATION "${PCD_INSTALL_INCLUDEDIR}" COMPONENT development)
endfunction()

# pcd_install_module(TARGET FOLDER COMPONENT): a library that is loaded by its path.
function(pcd_install_module name folder component)
    file(RELATIVE_PATH libraries "/${folder}" "/${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
    install(TARGETS ${name} LIBRARY DESTINATION "${folder}" COMPONENT ${component})
endfunction()

# pcd_install_program(TARGET): a program, which finds the libraries from any prefix.
function(pcd_install_program name)
    file(RELATIVE_PATH libraries "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
    install(TARGETS ${name} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT programs)
endfunction()

# pcd_install_completion(PROGRAM): its completion in shells, from the folder `completion`.
set(PCD_ZSH_COMPLETION_DIR "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" CACHE STRING
    "Where zsh looks for completion functions (in a Debian package: share/zsh/vendor-completions)")
function(pcd_install_completion program)
    install(FILES completion/${program}.bash RENAME ${program}
        DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT programs)
    install(FILES completion/_${program} DESTINATION "${PCD_ZSH_COMPLETION_DIR}" COMPONENT programs)
    install(FILES completion/${program}.fish
        DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT programs)
endfunction()

# pcd_install_package(): what lets other trees find the framework, by CMake and by pkg-config; and
# the target `uninstall`.
function(pcd_install_package)
    set(source "${CMAKE_SOURCE_DIR}/cmake/package")
    set(made "${CMAKE_BINARY_DIR}/package")
    foreach(set "" Gui)
        install(EXPORT PCd${set}Targets NAMESPACE PCd:: DESTINATION "${PCD_INSTALL_CMAKEDIR}"
            COMPONENT development)
    endforeach()
    configure_package_config_file("${source}/PCdConfig.cmake.in" "${made}/PCdConfig.cmake"
        INSTALL_DESTINATION "${PCD_INSTALL_CMAKEDIR}" PATH_VARS PCD_INSTALL_PLUGINDIR)
    # While the first number is 0, the second one says what fits.
    write_basic_package_version_file("${made}/PCdConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
    install(FILES "${made}/PCdConfig.cmake" "${made}/PCdConfigVersion.cmake"
        DESTINATION "${PCD_INSTALL_CMAKEDIR}" COMPONENT development)

    file(RELATIVE_PATH PCD_PREFIX_FROM_PC "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
    foreach(name pcd pcd-gui)
        configure_file("${source}/${name}.pc.in" "${made}/${name}.pc" @ONLY)
        install(FILES "${made}/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
            COMPONENT development)
    endforeach()

    configure_file("${source}/uninstall.cmake.in" "${made}/uninstall.cmake" @ONLY)
    add_custom_target(uninstall COMMAND "${CMAKE_COMMAND}" -P "${made}/uninstall.cmake"
        COMMENT "Removing what was installed last")
endfunction()
