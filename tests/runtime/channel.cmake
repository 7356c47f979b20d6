# Shared memory channel and worker threads. Both programs also run under ThreadSanitizer.
# The channel tests start a second process (kxbase_shm_peer) that opens the same area.
add_executable(kxbase_shm_peer ${CMAKE_CURRENT_SOURCE_DIR}/shm_peer.cpp)
target_link_libraries(kxbase_shm_peer PRIVATE kxbase_internal kxbase_warnings)

kxbase_add_gtest(kxbase_test_runtime_shm
    ${CMAKE_CURRENT_SOURCE_DIR}/shm_channel_test.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/shm_two_process_test.cpp)
target_compile_definitions(kxbase_test_runtime_shm PRIVATE
    KXBASE_SHM_PEER="$<TARGET_FILE:kxbase_shm_peer>")
add_dependencies(kxbase_test_runtime_shm kxbase_shm_peer)
set_tests_properties(kxbase_test_runtime_shm PROPERTIES LABELS "unit;tsan;posix")

kxbase_add_gtest(kxbase_test_runtime_thread ${CMAKE_CURRENT_SOURCE_DIR}/thread_test.cpp)
set_tests_properties(kxbase_test_runtime_thread PROPERTIES LABELS "unit;tsan;posix")
