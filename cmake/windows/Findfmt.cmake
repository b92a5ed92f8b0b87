# The headers are the building machine's; its library is compiled from them.
include(${CMAKE_CURRENT_LIST_DIR}/HeaderOnly.cmake)
tonvane_header_only(fmt fmt tonvane_fmt_headers)
add_library(tonvane_fmt STATIC ${CMAKE_CURRENT_LIST_DIR}/fmt.cpp)
target_link_libraries(tonvane_fmt PUBLIC tonvane_fmt_headers)
add_library(fmt::fmt ALIAS tonvane_fmt)
