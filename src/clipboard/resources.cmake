# The clipboard's additions to norva_core. On X11 the program a copy came from is read from the
# window manager through the xcb connection that Qt already holds, so libxcb is linked directly.
if(NOT APPLE)
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(NORVA_XCB REQUIRED IMPORTED_TARGET xcb)
    target_link_libraries(norva_core PUBLIC PkgConfig::NORVA_XCB)
endif()
