include(${CMAKE_CURRENT_LIST_DIR}/HeaderOnly.cmake)
tonvane_header_only(nlohmann_json nlohmann nlohmann_json::nlohmann_json)
