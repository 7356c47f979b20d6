# The core library: every subsystem folder compiles into one object set, which is
# linked twice, as libkxBaseCommon.so and as libkxBaseCommon.a.
set(KXBASE_CORE_SOURCES)
foreach(dir IN LISTS KXBASE_SUBSYSTEMS)
    if(dir STREQUAL "widgets")
        # widgets/ also holds the Qt library's sources; only these four belong to the core.
        foreach(f int64_parse messages number_format zoom_ratio)
            list(APPEND KXBASE_CORE_SOURCES ${PROJECT_SOURCE_DIR}/widgets/${f}.cpp)
        endforeach()
        file(GLOB _kx_src CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/base/*.cpp)
    else()
        file(GLOB _kx_src CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${dir}/*.cpp)
    endif()
    list(APPEND KXBASE_CORE_SOURCES ${_kx_src})
endforeach()

add_library(kxbase_objects OBJECT ${KXBASE_CORE_SOURCES})
target_include_directories(kxbase_objects
    PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
           $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
    PRIVATE ${PROJECT_SOURCE_DIR})
target_compile_definitions(kxbase_objects PRIVATE KXBASE_BUILDING)
# GCC marks some inline template statics STB_GNU_UNIQUE, which makes glibc refuse to unload
# the library on dlclose; without them a host can unload it and the exit steps run then.
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fno-gnu-unique KXBASE_HAVE_NO_GNU_UNIQUE)
if(KXBASE_HAVE_NO_GNU_UNIQUE)
    target_compile_options(kxbase_objects PRIVATE -fno-gnu-unique)
endif()
target_link_libraries(kxbase_objects PRIVATE kxbase_warnings)
# The library itself also keeps every narrowing conversion explicit.
target_compile_options(kxbase_objects PRIVATE -Wconversion)

find_package(Threads REQUIRED)

add_library(kxbase SHARED $<TARGET_OBJECTS:kxbase_objects>)
add_library(kxbase_static STATIC $<TARGET_OBJECTS:kxbase_objects>)
foreach(t kxbase kxbase_static)
    target_include_directories(${t} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_link_libraries(${t} PUBLIC Threads::Threads ${CMAKE_DL_LIBS} rt)
    set_target_properties(${t} PROPERTIES OUTPUT_NAME kxBaseCommon)
endforeach()
set_target_properties(kxbase PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME kxbase)
set_target_properties(kxbase_static PROPERTIES EXPORT_NAME kxbase_static)
add_library(kxBaseCommon::kxbase ALIAS kxbase)
add_library(kxBaseCommon::kxbase_static ALIAS kxbase_static)

# Tests reach internal helpers through the private headers beside the sources.
add_library(kxbase_internal INTERFACE)
target_include_directories(kxbase_internal INTERFACE ${PROJECT_SOURCE_DIR})
target_link_libraries(kxbase_internal INTERFACE kxbase_static)

# Installation and the CMake package / pkg-config file.
install(TARGETS kxbase kxbase_static EXPORT kxBaseCommonTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
install(DIRECTORY include/kxbase DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT kxBaseCommonTargets NAMESPACE kxBaseCommon::
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kxBaseCommon)
include(CMakePackageConfigHelpers)
configure_package_config_file(cmake/kxBaseCommonConfig.cmake.in
    ${PROJECT_BINARY_DIR}/kxBaseCommonConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kxBaseCommon)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kxBaseCommonConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kxBaseCommonConfig.cmake
    ${PROJECT_BINARY_DIR}/kxBaseCommonConfigVersion.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kxBaseCommon)
# The pkg-config file finds its prefix relative to itself, so an install moved to another
# prefix (cmake --install --prefix, DESTDIR packaging) still resolves.
file(RELATIVE_PATH KXBASE_PC_TO_PREFIX
    ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/kxbase.pc.in ${PROJECT_BINARY_DIR}/kxbase.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kxbase.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
