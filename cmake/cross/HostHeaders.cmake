# Header-only libraries of the build host (Debian's CLI11 and nlohmann-json), usable as they
# are by a cross build. Only each library's own header folder is exposed, through a link in
# the build tree: putting the host's whole include folder on the path would mix its C library
# headers into the target's.
#   kxbase_host_header_library(<target> <folder below the host include root>)
function(kxbase_host_header_library target folder)
    set(host_include /usr/include)
    set(root ${CMAKE_BINARY_DIR}/host-headers/${target})
    string(REPLACE "::" "_" root ${root})
    if(NOT EXISTS ${host_include}/${folder})
        return()
    endif()
    file(MAKE_DIRECTORY ${root})
    file(CREATE_LINK ${host_include}/${folder} ${root}/${folder} SYMBOLIC)
    if(NOT TARGET ${target})
        add_library(${target} INTERFACE IMPORTED GLOBAL)
        set_target_properties(${target} PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${root})
    endif()
endfunction()
