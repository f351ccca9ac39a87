# Install rules, the CMake package and the pkg-config file.

include(CMakePackageConfigHelpers)

set(toveng_include_dir ${CMAKE_INSTALL_INCLUDEDIR}/toveng)
set(toveng_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/toveng)

# With the flow's own libraries their platform headers replace the bundled ones.
if(TOV_PLATFORM_INCLUDE_DIR)
  install(DIRECTORY ${TOV_PLATFORM_INCLUDE_DIR}/platform DESTINATION ${toveng_include_dir} COMPONENT development
          FILES_MATCHING PATTERN "*.h")
endif()
# A header comes from the first folder that has it, as for the compiler.
file(STRINGS ${PROJECT_SOURCE_DIR}/cmake/public_headers.txt toveng_public_headers)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/public_headers.txt)
foreach(header IN LISTS toveng_public_headers)
  cmake_path(GET header PARENT_PATH folder)
  find_file(toveng_header ${header} NO_CACHE NO_DEFAULT_PATH REQUIRED
            PATHS ${TOV_PLATFORM_INCLUDE_DIR} ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/include)
  install(FILES ${toveng_header} DESTINATION ${toveng_include_dir}/${folder} COMPONENT development)
  unset(toveng_header)
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

# The pkg-config file, twice: with plain paths for the system's folders, and with paths relative to the file for any other
# prefix, where the tree may be moved. The prefix is known when the library is installed.
set(toveng_pc_folder ${CMAKE_INSTALL_PREFIX})
cmake_path(APPEND toveng_pc_folder ${CMAKE_INSTALL_LIBDIR} pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${toveng_pc_folder} OUTPUT_VARIABLE toveng_pc_up)
foreach(kind system movable)
  set(toveng_pc_prefix ${CMAKE_INSTALL_PREFIX})
  if(kind STREQUAL "movable")
    set(toveng_pc_prefix "\${pcfiledir}/${toveng_pc_up}")
  endif()
  set(toveng_pc_includedir "\${prefix}")
  set(toveng_pc_libdir "\${prefix}")
  cmake_path(APPEND toveng_pc_includedir ${toveng_include_dir})
  cmake_path(APPEND toveng_pc_libdir ${CMAKE_INSTALL_LIBDIR})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/toveng.pc.in ${PROJECT_BINARY_DIR}/${kind}/toveng.pc @ONLY)
endforeach()
install(CODE "
  set(kind movable)
  if(CMAKE_INSTALL_PREFIX STREQUAL [[${CMAKE_INSTALL_PREFIX}]] AND CMAKE_INSTALL_PREFIX MATCHES [[^/usr(/local)?$]])
    set(kind system)
  endif()
  cmake_path(APPEND CMAKE_INSTALL_PREFIX [[${CMAKE_INSTALL_LIBDIR}]] pkgconfig OUTPUT_VARIABLE folder)
  file(INSTALL \"${PROJECT_BINARY_DIR}/\${kind}/toveng.pc\" DESTINATION \"\${folder}\")
" COMPONENT development)
