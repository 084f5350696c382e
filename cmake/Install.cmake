# What goes where when Orlune is installed, and the two Debian packages made of it.
#
# The programs stand in one application directory with the module and the resource/ tree, since that is where they look
# for them; bin/ holds links. Component "application" is what a person runs, "development" what a host author needs.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(application_dir ${CMAKE_INSTALL_LIBDIR}/orlune)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Orlune)
set(made ${CMAKE_BINARY_DIR}/install)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
find_program(ORLUNE_GZIP NAMES gzip REQUIRED)

# orlune_install_gzipped(COMPONENT FOLDER FILE NAME): FILE as FOLDER/NAME.gz, the same bytes at each build.
function(orlune_install_gzipped component folder file name)
    file(MAKE_DIRECTORY ${made})
    add_custom_command(OUTPUT ${made}/${name}.gz
        COMMAND ${ORLUNE_GZIP} -9nc ${file} > ${made}/${name}.gz
        DEPENDS ${file} VERBATIM)
    string(MAKE_C_IDENTIFIER orlune_gzipped_${name} target)
    if(NOT TARGET ${target})
        add_custom_target(${target} ALL DEPENDS ${made}/${name}.gz)
        add_dependencies(orlune_app ${target})
    endif()
    install(FILES ${made}/${name}.gz DESTINATION ${folder} COMPONENT ${component})
endfunction()

# ---- The application
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME application)

install(TARGETS Orlune LIBRARY DESTINATION ${application_dir}
    PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
install(DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/resource DESTINATION ${application_dir})

file(RELATIVE_PATH from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/orlune)
foreach(program orlune-host orlune-lut)
    install(TARGETS ${program} RUNTIME DESTINATION ${application_dir})
    file(MAKE_DIRECTORY ${made}/bin)
    file(CREATE_LINK ${from_bin}/${program} ${made}/bin/${program} SYMBOLIC)
    install(FILES ${made}/bin/${program} DESTINATION ${CMAKE_INSTALL_BINDIR})
endforeach()
orlune_install_gzipped(application ${CMAKE_INSTALL_MANDIR}/man1 ${PROJECT_SOURCE_DIR}/host/orlune-host.1 orlune-host.1)
orlune_install_gzipped(application ${CMAKE_INSTALL_MANDIR}/man1 ${PROJECT_SOURCE_DIR}/tools/orlune-lut.1 orlune-lut.1)
install(FILES tools/orlune-lut.bash-completion
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME orlune-lut)

install(FILES packaging/org.orlune.Host.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/org.orlune.Host.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES packaging/org.orlune.Host.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/orlune)
install(DIRECTORY host/scripts DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/orlune/examples)

# ---- For host authors
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

install(FILES plugin/HostRecords.h plugin/IPlugin.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orlune/plugin)
install(FILES genapi/GenApi.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orlune/genapi)

add_library(orlune_sdk INTERFACE)
set_target_properties(orlune_sdk PROPERTIES EXPORT_NAME HostApi)
target_include_directories(orlune_sdk INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(orlune_sdk INTERFACE Qt5::Core)
install(TARGETS orlune_sdk EXPORT OrluneTargets)
install(EXPORT OrluneTargets NAMESPACE Orlune:: DESTINATION ${package_dir})

set(module_path ${application_dir}/Orlune.plx)
configure_package_config_file(packaging/OrluneConfig.cmake.in ${made}/OrluneConfig.cmake
    INSTALL_DESTINATION ${package_dir} PATH_VARS module_path)
write_basic_package_version_file(${made}/OrluneConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${made}/OrluneConfig.cmake ${made}/OrluneConfigVersion.cmake DESTINATION ${package_dir})

file(RELATIVE_PATH prefix_from_pkgconfig ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig ${prefix_from_pkgconfig})
configure_file(packaging/orlune.pc.in ${made}/orlune.pc @ONLY)
install(FILES ${made}/orlune.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/orlune-dev)

# ---- Debian packages
foreach(package orlune orlune-dev)
    string(REPLACE orlune-dev development component ${package})
    string(REPLACE orlune application component ${component})
    set(folder ${CMAKE_INSTALL_DATADIR}/doc/${package})
    install(FILES packaging/copyright DESTINATION ${folder} COMPONENT ${component})
    orlune_install_gzipped(${component} ${folder} ${packaging}/changelog changelog.Debian)
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL application development)
set(CPACK_PACKAGE_CONTACT "Orlune maintainers <maintainers@orlune.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_APPLICATION_PACKAGE_NAME orlune)
set(CPACK_DEBIAN_APPLICATION_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_APPLICATION_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_APPLICATION_PACKAGE_RECOMMENDS "fonts-dejavu-core, fonts-wqy-microhei, qt5-image-formats-plugins")
set(CPACK_COMPONENT_APPLICATION_DESCRIPTION
"editor for the look-up tables of machine-vision cameras
Shapes a camera's table of 4096 entries by eye: gamma, brightness and contrast
over standard curves, written to the camera while the live picture shows what
the table does. Frames of cameras without a table are mapped in software.

This package holds the editor, which camera applications load as a plug-in, a
viewer for real and simulated cameras, and a command line tool for table files.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME orlune-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "orlune (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), qtbase5-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"headers for camera applications that load the Orlune editor
What an application needs to load the editor of camera look-up tables as a
plug-in: three headers, files for CMake and pkg-config, and a small example.")
include(CPack)
