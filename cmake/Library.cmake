# The core library: one object library per layer (cmake/Layers.cmake), linked together twice,
# as libkxBaseCommon.so and as libkxBaseCommon.a.
include(${CMAKE_CURRENT_LIST_DIR}/Layers.cmake)

find_package(Threads REQUIRED)

add_library(kxbase SHARED ${KXBASE_LAYER_OBJECTS})
add_library(kxbase_static STATIC ${KXBASE_LAYER_OBJECTS})
# A static consumer must not see the import declarations of the shared library.
target_compile_definitions(kxbase_static PUBLIC KXBASE_STATIC)
foreach(t kxbase kxbase_static)
    target_include_directories(${t} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    if(WIN32)
        # Winsock for the start-up, GDI for the screen record.
        target_link_libraries(${t} PUBLIC Threads::Threads ws2_32 gdi32)
    else()
        target_link_libraries(${t} PUBLIC Threads::Threads ${CMAKE_DL_LIBS} rt)
    endif()
    set_target_properties(${t} PROPERTIES OUTPUT_NAME kxBaseCommon)
endforeach()
set_target_properties(kxbase PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME kxbase)
set_target_properties(kxbase_static PROPERTIES EXPORT_NAME kxbase_static)
if(WIN32)
    # The DLL's entry point, which only the shared library may have.
    target_sources(kxbase PRIVATE ${PROJECT_SOURCE_DIR}/platform/win32/dll/dll_main.cpp)
    # It asks the start-up (module/app_p.h) whether the load may go on.
    set_source_files_properties(${PROJECT_SOURCE_DIR}/platform/win32/dll/dll_main.cpp
        PROPERTIES INCLUDE_DIRECTORIES ${PROJECT_SOURCE_DIR})
    set_target_properties(kxbase PROPERTIES PREFIX "")  # kxBaseCommon.dll, as hosts load it
endif()
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
