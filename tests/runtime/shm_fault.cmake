# The channel under system faults: a full file system (a private tmpfs, where mounts are
# allowed), a file-size limit, an area cut short by another process and a peer killed inside a
# transfer. The transfers are held on a page of their buffer through userfaultfd; cases that
# cannot be set up on a system say so and skip.
if(NOT WIN32)
    kxbase_add_gtest(kxbase_test_runtime_shm_fault ${CMAKE_CURRENT_SOURCE_DIR}/shm_fault_test.cpp)
    set_tests_properties(kxbase_test_runtime_shm_fault PROPERTIES LABELS "unit;faults;posix")
endif()
