# The library's layers, lowest first, and what each one may use.
#
#   platform <- base <- geometry <- units, mathopt, compress <- ellipse, separate <- runtime <- module
#
# A layer names the layers it uses directly (each of a lower rank); it then sees those and
# everything they use, and nothing else. Each layer compiles as its own object library whose
# only include root is a folder of links made here (build/layers/<layer>/): one link per
# public header folder and per source folder it may see. An include of a layer above, or of a
# sibling, is therefore "file not found" at compile time, not a silent upward dependency.

set(KXBASE_LAYERS platform base geometry units mathopt compress ellipse separate runtime module)
set(_kx_rank_platform 0)
set(_kx_rank_base 1)
set(_kx_rank_geometry 2)
set(_kx_rank_units 3)
set(_kx_rank_mathopt 3)
set(_kx_rank_compress 3)
set(_kx_rank_ellipse 4)
set(_kx_rank_separate 4)
set(_kx_rank_runtime 5)
set(_kx_rank_module 6)

set(_kx_uses_platform "")
set(_kx_uses_base platform)
set(_kx_uses_geometry base)
set(_kx_uses_units base)
set(_kx_uses_mathopt base)
set(_kx_uses_compress base)
set(_kx_uses_ellipse geometry)
set(_kx_uses_separate geometry)
set(_kx_uses_runtime base)
set(_kx_uses_module units mathopt compress runtime)

# The operating-system backend: the only folder whose code calls the system.
if(WIN32)
    set(KXBASE_PLATFORM_BACKEND win32)
else()
    set(KXBASE_PLATFORM_BACKEND posix)
endif()

# kxbase_layer_closure(<layer> <out>): the layer and every layer it uses, directly or not.
function(kxbase_layer_closure layer out)
    set(result ${layer})
    foreach(dep IN LISTS _kx_uses_${layer})
        if(NOT _kx_rank_${dep} LESS _kx_rank_${layer})
            message(FATAL_ERROR "layer ${layer} may only use lower layers, not ${dep}")
        endif()
        kxbase_layer_closure(${dep} sub)
        list(APPEND result ${sub})
    endforeach()
    list(REMOVE_DUPLICATES result)
    set(${out} ${result} PARENT_SCOPE)
endfunction()

# kxbase_layer_root(<layer> <out>): the include root that shows exactly what <layer> may use.
function(kxbase_layer_root layer out)
    set(root ${PROJECT_BINARY_DIR}/layers/${layer})
    kxbase_layer_closure(${layer} seen)
    file(REMOVE_RECURSE ${root})
    file(MAKE_DIRECTORY ${root}/kxbase)
    foreach(h export.h version.h)
        file(CREATE_LINK ${PROJECT_SOURCE_DIR}/include/kxbase/${h} ${root}/kxbase/${h} SYMBOLIC COPY_ON_ERROR)
    endforeach()
    foreach(l IN LISTS seen)
        foreach(p include/kxbase/${l} include/kxbase/${l}.h)
            if(EXISTS ${PROJECT_SOURCE_DIR}/${p})
                string(REPLACE "include/" "" name ${p})
                file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${p} ${root}/${name} SYMBOLIC)
            endif()
        endforeach()
        file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${l} ${root}/${l} SYMBOLIC)
    endforeach()
    set(${out} ${root} PARENT_SCOPE)
endfunction()

# The layers to build: the requested subsystems and everything they use. The default builds
# all. "widgets" is accepted for the folder that held the number and message helpers.
set(_kx_requested ${KXBASE_SUBSYSTEMS})
list(TRANSFORM _kx_requested REPLACE "^widgets$" "base")
set(KXBASE_LAYERS_BUILT)
foreach(sub IN LISTS _kx_requested)
    if(NOT sub IN_LIST KXBASE_LAYERS)
        message(FATAL_ERROR "KXBASE_SUBSYSTEMS: unknown subsystem '${sub}' (known: ${KXBASE_LAYERS})")
    endif()
    kxbase_layer_closure(${sub} _kx_closure)
    list(APPEND KXBASE_LAYERS_BUILT ${_kx_closure})
endforeach()
# Keep the layer order, so that every later loop sees lower layers first.
set(_kx_ordered)
foreach(l IN LISTS KXBASE_LAYERS)
    if(l IN_LIST KXBASE_LAYERS_BUILT)
        list(APPEND _kx_ordered ${l})
    endif()
endforeach()
set(KXBASE_LAYERS_BUILT ${_kx_ordered})
if(NOT "${KXBASE_LAYERS_BUILT}" STREQUAL "${KXBASE_LAYERS}")
    message(STATUS "kxBaseCommon layers built: ${KXBASE_LAYERS_BUILT}")
endif()
# Tests, tools, fuzzers and benchmarks select their files by this list.
set(KXBASE_SUBSYSTEMS ${KXBASE_LAYERS_BUILT})

include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fno-gnu-unique KXBASE_HAVE_NO_GNU_UNIQUE)

# kxbase_layer_settings(<target> <layer>): compile <target> as code of <layer>.
function(kxbase_layer_settings target layer)
    kxbase_layer_root(${layer} root)
    target_include_directories(${target} PRIVATE ${root})
    target_compile_definitions(${target} PRIVATE KXBASE_BUILDING)
    target_link_libraries(${target} PRIVATE kxbase_warnings)
    # The library itself also keeps every narrowing conversion explicit.
    target_compile_options(${target} PRIVATE -Wconversion)
    # GCC marks some inline template statics STB_GNU_UNIQUE, which makes glibc refuse to
    # unload the library on dlclose; without them a host can unload it and the exit steps run.
    if(KXBASE_HAVE_NO_GNU_UNIQUE)
        target_compile_options(${target} PRIVATE -fno-gnu-unique)
    endif()
endfunction()

set(KXBASE_LAYER_OBJECTS)
foreach(layer IN LISTS KXBASE_LAYERS_BUILT)
    file(GLOB _kx_src CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${layer}/*.cpp)
    if(layer STREQUAL "platform")
        file(GLOB _kx_backend CONFIGURE_DEPENDS
             ${PROJECT_SOURCE_DIR}/platform/${KXBASE_PLATFORM_BACKEND}/*.cpp)
        list(APPEND _kx_src ${_kx_backend})
    endif()
    add_library(kxbase_layer_${layer} OBJECT ${_kx_src})
    kxbase_layer_settings(kxbase_layer_${layer} ${layer})
    foreach(dep IN LISTS _kx_uses_${layer})
        target_link_libraries(kxbase_layer_${layer} PRIVATE kxbase_layer_${dep})
    endforeach()
    list(APPEND KXBASE_LAYER_OBJECTS $<TARGET_OBJECTS:kxbase_layer_${layer}>)
endforeach()
