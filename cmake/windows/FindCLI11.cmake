include(${CMAKE_CURRENT_LIST_DIR}/HeaderOnly.cmake)
tonvane_header_only(CLI11 CLI CLI11::CLI11)
