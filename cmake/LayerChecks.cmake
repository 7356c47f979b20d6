# Checks of the library's shape, built with the tests.
#
# 1. Every public header compiles alone (twice in one unit, so a missing include guard shows),
#    with the warnings of the library, and a header of a layer sees only that layer and the
#    layers below it: a public header that includes upward does not compile here.
# 2. An upward or sideways include in a layer's code is a build error. The ctests
#    layer_probe_* build small units as code of one layer and expect "file not found" for a
#    header of a layer above or beside it, and success for one below (so a probe cannot pass
#    because the set-up itself is broken).

set(_kx_hc_dir ${PROJECT_BINARY_DIR}/header_check)
file(GLOB_RECURSE _kx_headers RELATIVE ${PROJECT_SOURCE_DIR}/include CONFIGURE_DEPENDS
     ${PROJECT_SOURCE_DIR}/include/kxbase/*.h)
set(_kx_hc_sources)
foreach(h IN LISTS _kx_headers)
    # kxbase/<layer>/x.h and kxbase/<layer>.h belong to <layer>.
    string(REGEX REPLACE "^kxbase/([a-z_0-9]+)(/.*|\\.h)$" "\\1" owner ${h})
    if(owner STREQUAL "ui")
        continue()  # the user-interface library checks its own headers
    endif()
    if(owner IN_LIST KXBASE_LAYERS AND NOT owner IN_LIST KXBASE_LAYERS_BUILT)
        continue()
    endif()
    string(MAKE_C_IDENTIFIER ${h} unit)
    set(src ${_kx_hc_dir}/${unit}.cpp)
    file(CONFIGURE OUTPUT ${src} CONTENT "#include <${h}>\n#include <${h}>\n")
    if(owner IN_LIST KXBASE_LAYERS)
        set_source_files_properties(${src} PROPERTIES
            INCLUDE_DIRECTORIES ${PROJECT_BINARY_DIR}/layers/${owner})
    else()
        # export.h, version.h, the umbrella kxbase.h and the forwarding headers of old paths.
        set_source_files_properties(${src} PROPERTIES
            INCLUDE_DIRECTORIES ${PROJECT_SOURCE_DIR}/include)
    endif()
    list(APPEND _kx_hc_sources ${src})
endforeach()
add_library(kxbase_header_check OBJECT ${_kx_hc_sources})
target_link_libraries(kxbase_header_check PRIVATE kxbase_warnings)
target_compile_options(kxbase_header_check PRIVATE -Wconversion)

# kxbase_layer_probe(<name> <layer> <header> <expect: found|missing>)
function(kxbase_layer_probe name layer header expect)
    if(NOT layer IN_LIST KXBASE_LAYERS_BUILT)
        return()
    endif()
    set(src ${PROJECT_BINARY_DIR}/layer_probes/${name}.cpp)
    file(CONFIGURE OUTPUT ${src} CONTENT "#include ${header}\n")
    add_library(kxbase_layer_probe_${name} OBJECT EXCLUDE_FROM_ALL ${src})
    kxbase_layer_settings(kxbase_layer_probe_${name} ${layer})
    add_test(NAME layer_probe_${name}
             COMMAND ${CMAKE_COMMAND} --build ${PROJECT_BINARY_DIR} --target kxbase_layer_probe_${name})
    string(REGEX REPLACE "^[<\"](.*)[>\"]$" "\\1" path ${header})
    string(REPLACE "." "\\." path ${path})
    if(expect STREQUAL "missing")
        # GCC says "<path>: No such file or directory", clang "'<path>' file not found".
        set_tests_properties(layer_probe_${name} PROPERTIES
            PASS_REGULAR_EXPRESSION "${path}'?:? (No such file or directory|file not found)")
    endif()
    # The probes run the build tool in this build tree, which must not run twice at once.
    set_tests_properties(layer_probe_${name} PROPERTIES LABELS "unit;layers" RUN_SERIAL TRUE)
endfunction()

kxbase_layer_probe(geometry_sees_base geometry "<kxbase/base/number_format.h>" found)
kxbase_layer_probe(geometry_sees_base_private geometry "\"base/saturate_p.h\"" found)
kxbase_layer_probe(geometry_cannot_see_runtime geometry "<kxbase/runtime/thread.h>" missing)
kxbase_layer_probe(compress_cannot_see_mathopt compress "<kxbase/mathopt/amathopt.h>" missing)
kxbase_layer_probe(base_cannot_see_ellipse_private base "\"ellipse/ellipse_p.h\"" missing)
kxbase_layer_probe(platform_cannot_see_base platform "<kxbase/base/messages.h>" missing)
