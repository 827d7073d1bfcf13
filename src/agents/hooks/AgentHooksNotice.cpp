#include "agents/hooks/AgentHooksNotice.h"

namespace norva {

AgentHooksNotice& AgentHooksNotice::instance()
{
    static AgentHooksNotice notice;
    return notice;
}

} // namespace norva
