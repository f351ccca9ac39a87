include(CMakeFindDependencyMacro)
find_dependency(toveng)
include(${CMAKE_CURRENT_LIST_DIR}/editor-targets.cmake)
