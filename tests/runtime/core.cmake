# Runtime core: error object, elapsed time, buffer manager, product folders, environment.
kxbase_add_gtest(kxbase_test_runtime_core
    ${CMAKE_CURRENT_SOURCE_DIR}/error_test.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/format_test.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/cost_time_test.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/buffer_test.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/app_path_test.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/env_resource_test.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/thread_stop_test.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/shm_portable_test.cpp)

# Readers and writers of the error object racing each other; the TSan build runs it (-L tsan).
kxbase_add_gtest(kxbase_test_runtime_error_race ${CMAKE_CURRENT_SOURCE_DIR}/error_race_test.cpp)
set_tests_properties(kxbase_test_runtime_error_race PROPERTIES LABELS "unit;tsan")
