# Warning flags shared by every target of the project.
add_library(kxbase_warnings INTERFACE)
target_compile_options(kxbase_warnings INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor>)
