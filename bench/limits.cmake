# Sizes far beyond any design, run by scripts/limits.
add_executable(toveng_limits limits.cpp)
target_link_libraries(toveng_limits PRIVATE toveng toveng_options)
