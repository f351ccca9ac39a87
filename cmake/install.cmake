# Install rules, the CMake package and the pkg-config file.

include(CMakePackageConfigHelpers)

set(toveng_include_dir ${CMAKE_INSTALL_INCLUDEDIR}/toveng)
set(toveng_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/toveng)

# With the flow's own libraries their platform headers stand in place of the bundled ones.
if(TOV_PLATFORM_INCLUDE_DIR)
  install(DIRECTORY ${TOV_PLATFORM_INCLUDE_DIR}/platform DESTINATION ${toveng_include_dir} COMPONENT development
          FILES_MATCHING PATTERN "*.h")
endif()
# The first folder that has a header gives it, as for the compiler.
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

# In the system's folders the paths of the pkg-config file are plain. In any other prefix they are relative to the file, so
# that the tree may be moved. Which it is shows only when it is installed.
set(toveng_pc_prefix @TOVENG_PREFIX@)
set(toveng_pc_includedir "\${prefix}")
set(toveng_pc_libdir "\${prefix}")
cmake_path(APPEND toveng_pc_includedir ${toveng_include_dir})
cmake_path(APPEND toveng_pc_libdir ${CMAKE_INSTALL_LIBDIR})
configure_file(${PROJECT_SOURCE_DIR}/cmake/toveng.pc.in ${PROJECT_BINARY_DIR}/toveng.pc.in @ONLY)
install(CODE "
  cmake_path(APPEND CMAKE_INSTALL_PREFIX \"${CMAKE_INSTALL_LIBDIR}\" pkgconfig OUTPUT_VARIABLE folder)
  set(TOVENG_PREFIX \"\${CMAKE_INSTALL_PREFIX}\")
  if(NOT TOVENG_PREFIX MATCHES [[^/usr(/local)?$]])
    cmake_path(RELATIVE_PATH TOVENG_PREFIX BASE_DIRECTORY \"\${folder}\")
    string(PREPEND TOVENG_PREFIX [[\${pcfiledir}/]])
  endif()
  configure_file(\"${PROJECT_BINARY_DIR}/toveng.pc.in\" \"${PROJECT_BINARY_DIR}/toveng.pc\" @ONLY)
  file(INSTALL \"${PROJECT_BINARY_DIR}/toveng.pc\" DESTINATION \"\${folder}\")
" COMPONENT development)
