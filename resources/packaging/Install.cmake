# Installing Quillon the way a Linux desktop program is installed, and the
# .deb package built from that (cpack -G DEB, or scripts/build_deb.sh).
#
# Layout under the prefix:
#   lib/quillon/                the program folder: the executable and all it
#                               finds beside itself (settings.ini, scripts/,
#                               examples/, helper tools, plug-ins)
#   bin/quillon                 a symbolic link into it; the program resolves
#                               the link and so finds its folder
#   share/applications, share/icons/hicolor, share/mime/packages,
#   share/man/man1              menu entry, icon, file types, manual page
#
# What joins the program folder without editing this file:
#   - every file under resources/runtime/ (its permissions kept, so scripts
#     stay executable), e.g. QLN.xsd;
#   - examples/;
#   - every executable target named quillon-* (also linked into bin/), and
#     every shared or module library target named quillon_* (plug-ins such as
#     libquillon_python.so), wherever it is defined outside tests/, bench/
#     and fuzz/;
#   - whatever the build places at the top of the runtime folder (the folder
#     of the executable in the build tree) under the name quillon-* (a tool
#     that is a script, also linked into bin/) or *.xsd (schemas such as
#     QLN.xsd), picked up when installing.
#
# QUILLON_INSTALL_SETTINGS names a settings.ini to install in place of the
# development one (which switches the author tools on).
include(GNUInstallDirs)

set(QUILLON_PROGRAM_DIR "lib/quillon" CACHE STRING "Program folder, relative to the install prefix")
set(QUILLON_PACKAGING_DIR ${CMAKE_CURRENT_LIST_DIR})

install(TARGETS quillon RUNTIME DESTINATION ${QUILLON_PROGRAM_DIR})
install(DIRECTORY ${CMAKE_SOURCE_DIR}/resources/runtime/ DESTINATION ${QUILLON_PROGRAM_DIR} USE_SOURCE_PERMISSIONS)
set(QUILLON_INSTALL_SETTINGS "" CACHE FILEPATH "settings.ini to install instead of resources/runtime/settings.ini")
if(QUILLON_INSTALL_SETTINGS)
    install(FILES ${QUILLON_INSTALL_SETTINGS} DESTINATION ${QUILLON_PROGRAM_DIR} RENAME settings.ini)
endif()
install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples DESTINATION ${QUILLON_PROGRAM_DIR} USE_SOURCE_PERMISSIONS
        PATTERN "screenshot.png" EXCLUDE)

# bin/<name> -> ../lib/quillon/<name>, relative so that the tree can move
# (DESTDIR, cpack's staging folder, an unpacked .deb).
function(quillon_install_bin_link name)
    file(RELATIVE_PATH target "/${CMAKE_INSTALL_BINDIR}" "/${QUILLON_PROGRAM_DIR}/${name}")
    install(CODE "
        set(_bin \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
        file(MAKE_DIRECTORY \"\${_bin}\")
        file(REMOVE \"\${_bin}/${name}\")
        file(CREATE_LINK \"${target}\" \"\${_bin}/${name}\" SYMBOLIC)
        message(STATUS \"Linking: \${_bin}/${name} -> ${target}\")")
endfunction()
quillon_install_bin_link(quillon)

install(FILES ${QUILLON_PACKAGING_DIR}/quillon.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_SOURCE_DIR}/resources/images/vantage_k.png
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/64x64/apps RENAME quillon.png)
install(FILES ${QUILLON_PACKAGING_DIR}/quillon-mime.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages RENAME quillon.xml)

# The manual page, compressed as Debian installs them.
find_program(GZIP_PROGRAM gzip)
if(GZIP_PROGRAM)
    add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/quillon.1.gz
        COMMAND ${GZIP_PROGRAM} -9 -n -c ${QUILLON_PACKAGING_DIR}/quillon.1 > ${CMAKE_BINARY_DIR}/quillon.1.gz
        DEPENDS ${QUILLON_PACKAGING_DIR}/quillon.1 VERBATIM)
    add_custom_target(quillon_manpage ALL DEPENDS ${CMAKE_BINARY_DIR}/quillon.1.gz)
    install(FILES ${CMAKE_BINARY_DIR}/quillon.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
else()
    install(FILES ${QUILLON_PACKAGING_DIR}/quillon.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()

# Helper tools and plug-ins by name, collected once every directory has
# defined its targets.
function(quillon_collect_targets dir result)
    get_property(found DIRECTORY ${dir} PROPERTY BUILDSYSTEM_TARGETS)
    get_property(subdirs DIRECTORY ${dir} PROPERTY SUBDIRECTORIES)
    foreach(sub ${subdirs})
        file(RELATIVE_PATH rel ${CMAKE_SOURCE_DIR} ${sub})
        if(rel MATCHES "^(tests|bench|fuzz)(/|$)")
            continue()
        endif()
        quillon_collect_targets(${sub} sub_found)
        list(APPEND found ${sub_found})
    endforeach()
    set(${result} ${found} PARENT_SCOPE)
endfunction()

function(quillon_install_helpers)
    quillon_collect_targets(${CMAKE_SOURCE_DIR} targets)
    set(by_target "")
    foreach(t ${targets})
        get_target_property(type ${t} TYPE)
        if(type STREQUAL "EXECUTABLE" AND t MATCHES "^quillon-")
            install(TARGETS ${t} RUNTIME DESTINATION ${QUILLON_PROGRAM_DIR})
            quillon_install_bin_link(${t})
            list(APPEND by_target ${t})
        elseif((type STREQUAL "SHARED_LIBRARY" OR type STREQUAL "MODULE_LIBRARY") AND t MATCHES "^quillon_")
            install(TARGETS ${t} LIBRARY DESTINATION ${QUILLON_PROGRAM_DIR})
        endif()
    endforeach()
    # The rest of the runtime folder by name, when installing (the build may
    # only now have put it there).
    file(RELATIVE_PATH bin_to_program "/${CMAKE_INSTALL_BINDIR}" "/${QUILLON_PROGRAM_DIR}")
    install(CODE "
        set(_by_target \"${by_target}\")
        set(_program \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${QUILLON_PROGRAM_DIR}\")
        set(_bin \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
        file(GLOB _found LIST_DIRECTORIES false \"${QUILLON_RUNTIME_DIR}/quillon-*\" \"${QUILLON_RUNTIME_DIR}/*.xsd\")
        foreach(_file \${_found})
            get_filename_component(_name \${_file} NAME)
            list(FIND _by_target \"\${_name}\" _index)
            if(_index EQUAL -1)
                file(INSTALL \${_file} DESTINATION \${_program} USE_SOURCE_PERMISSIONS)
                if(_name MATCHES \"^quillon-\")
                    file(MAKE_DIRECTORY \${_bin})
                    file(REMOVE \${_bin}/\${_name})
                    file(CREATE_LINK ${bin_to_program}/\${_name} \${_bin}/\${_name} SYMBOLIC)
                endif()
            endif()
        endforeach()")
endfunction()

if(CMAKE_VERSION VERSION_GREATER_EQUAL 3.19)
    cmake_language(DEFER DIRECTORY ${CMAKE_SOURCE_DIR} CALL quillon_install_helpers)
else()
    quillon_install_helpers()
endif()

# The Debian package. Its dependencies are computed from the installed
# binaries by dpkg-shlibdeps, not listed by hand.
set(CPACK_GENERATOR "DEB")
set(CPACK_PACKAGE_NAME "quillon")
set(CPACK_PACKAGE_VENDOR "Norvane Technologies")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "configuration tool for microcontroller hardware")
set(CPACK_PACKAGE_DESCRIPTION "Quillon turns a hardware description and the device's CMSIS-SVD file into a form
 whose controls are bound to register bits, saves the choices as a .qlnp
 configuration and exports C headers with the resulting register values.")
set(CPACK_PACKAGE_CONTACT "Norvane Technologies <quillon@norvane.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "electronics")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://norvane.invalid/quillon")
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_BINARY_DIR}/packages)
include(CPack)
