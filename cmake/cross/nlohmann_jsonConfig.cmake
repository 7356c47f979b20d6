include(${CMAKE_CURRENT_LIST_DIR}/HostHeaders.cmake)
kxbase_host_header_library(nlohmann_json::nlohmann_json nlohmann)
set(nlohmann_json_FOUND TRUE)
set(nlohmann_json_VERSION 3.11.2)
