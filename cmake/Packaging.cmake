# Debian packages through CPack. From a Release build configured with
# -DCMAKE_INSTALL_PREFIX=/usr (so the library lands in the multiarch folder), `cpack -G DEB`
# in the build folder writes:
#   libkxbasecommon<major>   the shared library with its soname (install component "runtime")
#   libkxbasecommon-dev      headers, static library, the .so link, the CMake package and the
#                            pkg-config file (component "dev")
#   kxbase-tools             the kxbase program, kxbase-gui when that target is built, and
#                            their man pages (component "tools")
#   libkxbasecommonui<major> the Qt widget library, when the kxbase_ui target is built
#                            (component "ui": its install rule names LIBRARY COMPONENT ui
#                            NAMELINK_COMPONENT dev, and kxbase-gui's names COMPONENT tools)
# Install rules without a component land in "dev" (CMAKE_INSTALL_DEFAULT_COMPONENT_NAME, set
# before the library's rules), so a new header or config file needs no packaging change.
# The package version is the project version (read from include/kxbase/version.h) plus the
# Debian revision below; docs/debian/changelog must name that same version.

set(KXBASE_PACKAGE_MAINTAINER "kxBaseCommon developers <kxbase-dev@example.com>"
    CACHE STRING "Maintainer field of the Debian packages")
set(KXBASE_PACKAGE_REVISION 1 CACHE STRING "Debian revision of the packages (the part after the '-')")

set(_kx_deb_version "${PROJECT_VERSION}-${KXBASE_PACKAGE_REVISION}")
set(_kx_runtime_pkg "libkxbasecommon${PROJECT_VERSION_MAJOR}")
set(_kx_dev_pkg "libkxbasecommon-dev")
set(_kx_tools_pkg "kxbase-tools")
set(_kx_ui_pkg "libkxbasecommonui${PROJECT_VERSION_MAJOR}")

# The Debian changelog is kept by hand, like debian/changelog in a source package. A
# version.h bump without a changelog entry is reported here, and scripts/package.sh refuses
# to check packages whose changelog names another version.
file(STRINGS ${PROJECT_SOURCE_DIR}/docs/debian/changelog _kx_changelog_top LIMIT_COUNT 1)
if(NOT _kx_changelog_top MATCHES "^kxbasecommon \\(([^)]+)\\)" OR NOT CMAKE_MATCH_1 STREQUAL _kx_deb_version)
    message(WARNING "docs/debian/changelog does not start with an entry for ${_kx_deb_version}: "
                    "add one before building packages")
endif()

# Every package carries its copyright file and the compressed changelog under
# /usr/share/doc/<package>/, as Debian policy asks of every binary package. gzip -n keeps
# the name and time stamp out of the archive, so the package is reproducible.
find_program(KXBASE_GZIP gzip REQUIRED)
set(_kx_changelog_gz ${PROJECT_BINARY_DIR}/packaging/changelog.Debian.gz)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/packaging)
execute_process(COMMAND ${KXBASE_GZIP} -9nc ${PROJECT_SOURCE_DIR}/docs/debian/changelog
    OUTPUT_FILE ${_kx_changelog_gz} COMMAND_ERROR_IS_FATAL ANY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/debian/changelog)

set(_kx_components runtime dev)
if(TARGET kxbase_ui)
    list(APPEND _kx_components ui)
endif()
if(TARGET kxbase_tool OR TARGET kxbase_gui)
    list(APPEND _kx_components tools)
endif()
foreach(comp IN LISTS _kx_components)
    set(_pkg ${_kx_${comp}_pkg})
    install(FILES ${PROJECT_SOURCE_DIR}/docs/debian/copyright ${_kx_changelog_gz}
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${_pkg} COMPONENT ${comp})
    string(TOUPPER ${comp} _COMP)
    set(CPACK_DEBIAN_${_COMP}_PACKAGE_NAME ${_pkg})
    # Lintian knows these overrides by package; tags listed there are explained in the file.
    if(EXISTS ${PROJECT_SOURCE_DIR}/docs/debian/${_pkg}.lintian-overrides)
        install(FILES ${PROJECT_SOURCE_DIR}/docs/debian/${_pkg}.lintian-overrides
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides RENAME ${_pkg} COMPONENT ${comp})
    endif()
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kxbasecommon)
set(CPACK_PACKAGE_VENDOR "kxBaseCommon developers")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${KXBASE_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_COMPONENTS_ALL ${_kx_components})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${KXBASE_PACKAGE_REVISION})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SOURCE kxbasecommon)
# Installed programs and libraries are stripped: the packages ship no debug information.
set(CPACK_STRIP_FILES ON)
# dpkg-shlibdeps finds the system libraries each binary needs (libc, libstdc++, libpng, ...);
# the dependencies between our own packages are exact versions, from the component graph.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Our programs need libkxBaseCommon.so.1, which no installed package provides yet: point
# dpkg-shlibdeps at the folder the build writes it to.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS)
foreach(lib kxbase kxbase_ui)
    if(TARGET ${lib})
        get_target_property(_kx_lib_dir ${lib} LIBRARY_OUTPUT_DIRECTORY)
        if(NOT _kx_lib_dir)
            get_target_property(_kx_lib_dir ${lib} BINARY_DIR)
        endif()
        list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${_kx_lib_dir})
    endif()
endforeach()
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
# The linker cache is refreshed through dpkg's ldconfig trigger, as Debian policy asks of
# shared library packages; the do-nothing postinst and postrm keep CPack from adding direct
# ldconfig calls instead.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/docs/debian/libkxbasecommon/triggers
    ${PROJECT_SOURCE_DIR}/docs/debian/libkxbasecommon/postinst
    ${PROJECT_SOURCE_DIR}/docs/debian/libkxbasecommon/postrm)
# The shlibs file lets dpkg-shlibdeps of other projects find the runtime package. Any 1.x
# library satisfies a program built against 1.y with y <= x (see the versioning rules in the
# README), so programs depend on at least the version they were built with.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "base library of the RIP product family (shared library)
kxBaseCommon provides double-precision geometry and affine transforms,
resolution and length units, byte-exact raster codecs (LZW, run-length,
bit packing, Base64), ellipse and shape rasterisation into scan-line spans,
B-spline to Bezier conversion and runtime services (error object, worker
threads, timers, a windowed shared-memory channel between processes).

This package contains the shared library.")

set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
if(TARGET kxbase_ui)
    list(APPEND CPACK_COMPONENT_DEV_DEPENDS ui)
endif()
set(CPACK_COMPONENT_DEV_DESCRIPTION
    "base library of the RIP product family (development files)
kxBaseCommon provides geometry and transforms, units, raster codecs, ellipse
rasterisation, spline conversion and runtime services for the RIP products.

This package contains the public headers, which document every function,
the static library, the CMake package (find_package(kxBaseCommon)) and the
pkg-config file (kxbase).")

set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)
if(TARGET kxbase_gui)
    list(APPEND CPACK_COMPONENT_TOOLS_DEPENDS ui)
endif()
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
    "command-line tools over the kxBaseCommon library
The kxbase program prints page sizes and unit conversions, packs and unpacks
files with the library's raster codecs, renders ellipses to PNG, converts
B-splines, tests the shared-memory channel and shows the string table.")

set(CPACK_DEBIAN_UI_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_UI_PACKAGE_CONTROL_EXTRA ${CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA})
set(CPACK_COMPONENT_UI_DEPENDS runtime)
set(CPACK_COMPONENT_UI_DESCRIPTION
    "base library of the RIP product family (Qt widgets)
The user-interface classes of kxBaseCommon on Qt 6 Widgets: the sortable list
control, message helpers and dialogs.

This package contains the shared library.")

include(CPack)
