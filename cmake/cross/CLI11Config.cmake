include(${CMAKE_CURRENT_LIST_DIR}/HostHeaders.cmake)
kxbase_host_header_library(CLI11::CLI11 CLI)
set(CLI11_FOUND TRUE)
