# The hook scripts ship inside Norva and are written out whole when the hooks are installed.
qt_add_resources(norva_core "agent_hook_scripts"
    PREFIX "/agents"
    BASE ${CMAKE_CURRENT_SOURCE_DIR}/agents
    FILES
        agents/scripts/common.sh
        agents/scripts/pretooluse.sh
        agents/scripts/posttooluse.sh
        agents/scripts/codex-hook.sh
        agents/scripts/copilot-hook.sh)

# The usage bridge that Claude Code runs as its status line.
qt_add_resources(norva_core "agent_usage_bridge"
    PREFIX "/agents"
    BASE ${CMAKE_CURRENT_SOURCE_DIR}/agents
    FILES
        agents/scripts/statusline.sh)

# The jump-back brings a terminal's window forward through the X server (libxcb, which every X11
# desktop and Qt's own xcb platform already load).
if(NOT APPLE)
    pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
    target_link_libraries(norva_core PUBLIC PkgConfig::XCB)
endif()
