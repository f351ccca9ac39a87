# Install rules, the CMake package, the pkg-config file and the Debian packages.

include(CMakePackageConfigHelpers)

set(toveng_include_dir ${CMAKE_INSTALL_INCLUDEDIR}/toveng)
set(toveng_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/toveng)
set(toveng_public_headers
    platform/export.h
    tov/tov.h
    tov/cmd/attr.h
    tov/cmd/clock_def.h
    tov/cmd/clock_group_def.h
    tov/cmd/cmd.h
    tov/cmd/commands.h
    tov/cmd/false_path.h
    tov/cmd/gen_clock_def.h
    tov/cmd/io_delay.h
    tov/cmd/multi_path.h
    tov/cmd/timing_delay.h
    tov/design/bus_node.h
    tov/design/cell_node.h
    tov/design/design.h
    tov/design/mrc_dump_reader.h
    tov/design/node.h)

# With the flow's own libraries their platform headers stand in place of the bundled ones.
if(TOV_PLATFORM_INCLUDE_DIR)
  install(DIRECTORY ${TOV_PLATFORM_INCLUDE_DIR}/platform DESTINATION ${toveng_include_dir} COMPONENT development
          FILES_MATCHING PATTERN "*.h")
endif()
foreach(header platform/dci.h platform/ut.h platform/ppstl_list.h)
  if(NOT TOV_PLATFORM_INCLUDE_DIR OR NOT EXISTS ${TOV_PLATFORM_INCLUDE_DIR}/${header})
    list(APPEND toveng_public_headers ${header})
  endif()
endforeach()

foreach(header IN LISTS toveng_public_headers)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${toveng_include_dir}/${folder} COMPONENT development)
endforeach()

target_include_directories(toveng PUBLIC $<INSTALL_INTERFACE:${toveng_include_dir}>)
install(TARGETS toveng EXPORT toveng-targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
install(EXPORT toveng-targets NAMESPACE toveng:: DESTINATION ${toveng_package_dir} COMPONENT development)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/toveng-config.cmake.in
                              ${PROJECT_BINARY_DIR}/toveng-config.cmake
                              INSTALL_DESTINATION ${toveng_package_dir}
                              NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/toveng-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/toveng-config.cmake ${PROJECT_BINARY_DIR}/toveng-config-version.cmake
        DESTINATION ${toveng_package_dir} COMPONENT development)

# The paths of the pkg-config file are relative to the file, so that an installed tree may be moved.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
           OUTPUT_VARIABLE toveng_pc_prefix)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
           OUTPUT_VARIABLE toveng_pc_include_dir)
configure_file(${PROJECT_SOURCE_DIR}/cmake/toveng.pc.in ${PROJECT_BINARY_DIR}/toveng.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/toveng.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME toveng)
set(CPACK_PACKAGE_VENDOR "toveng")
set(CPACK_PACKAGE_CONTACT "The toveng maintainers <toveng@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libtoveng${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtoveng-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "libtoveng${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")
include(CPack)
