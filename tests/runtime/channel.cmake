# Shared memory channel and worker threads. Both programs also run under ThreadSanitizer.
# The channel tests fork a second process that opens the same area by name.
kxbase_add_gtest(kxbase_test_runtime_shm ${CMAKE_CURRENT_SOURCE_DIR}/shm_channel_test.cpp)
set_tests_properties(kxbase_test_runtime_shm PROPERTIES LABELS "unit;tsan")

kxbase_add_gtest(kxbase_test_runtime_thread ${CMAKE_CURRENT_SOURCE_DIR}/thread_test.cpp)
set_tests_properties(kxbase_test_runtime_thread PROPERTIES LABELS "unit;tsan")
