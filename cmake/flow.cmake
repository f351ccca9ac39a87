# The flow's own libraries, with TOV_PLATFORM=external. They are not installed: a client links them too, because the
# public headers call them, and finds them in their own folders at run time.

foreach(target toveng toveng_objects)
  target_link_libraries(${target} PUBLIC ${TOV_PLATFORM_LIBRARIES})
  if(TOV_PLATFORM_INCLUDE_DIR)
    target_include_directories(${target} BEFORE PUBLIC $<BUILD_INTERFACE:${TOV_PLATFORM_INCLUDE_DIR}>)
  endif()
endforeach()

# The installed library looks for them in their folders, and so does a client that is linked by pkg-config.
set(toveng_flow_libs "")
foreach(library IN LISTS TOV_PLATFORM_LIBRARIES)
  if(library MATCHES "^-")
    string(APPEND toveng_flow_libs " ${library}")
  elseif(NOT library MATCHES "/")
    string(APPEND toveng_flow_libs " -l${library}")
  elseif(IS_ABSOLUTE ${library} AND EXISTS ${library})
    cmake_path(GET library PARENT_PATH folder)
    string(APPEND toveng_flow_libs " ${library} -Wl,-rpath,${folder}")
    set_property(TARGET toveng APPEND PROPERTY INSTALL_RPATH ${folder})
  else()
    message(FATAL_ERROR "TOV_PLATFORM_LIBRARIES: ${library} is not the full path of a file")
  endif()
endforeach()
