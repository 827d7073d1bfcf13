# The hook scripts ship inside Norva and are written out whole when the hooks are installed.
qt_add_resources(norva_core "agent_hook_scripts"
    PREFIX "/agents"
    BASE ${CMAKE_CURRENT_SOURCE_DIR}/agents
    FILES
        agents/scripts/common.sh
        agents/scripts/pretooluse.sh
        agents/scripts/posttooluse.sh
        agents/scripts/permissionrequest.sh
        agents/scripts/codex-hook.sh
        agents/scripts/copilot-hook.sh)

# The usage bridge that Claude Code runs as its status line.
qt_add_resources(norva_core "agent_usage_bridge"
    PREFIX "/agents"
    BASE ${CMAKE_CURRENT_SOURCE_DIR}/agents
    FILES
        agents/scripts/statusline.sh)
