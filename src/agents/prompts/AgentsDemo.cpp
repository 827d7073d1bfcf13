#include "agents/prompts/AgentsDemo.h"

#include "agents/ApprovalsFolder.h"

namespace norva {

void AgentsDemo::placeSamplePrompts(const QString& approvalsFolder, const QDateTime& now)
{
    const ApprovalsFolder folder(approvalsFolder);
    if (!folder.ensure())
        return;
    const struct {
        const char* id;
        const char* payload;
    } samples[] = {
        {"toolu_demo_1",
         R"({"session_id":"demo","cwd":"/home/sam/shop","tool_name":"Bash","tool_input":{"command":"npm publish --access public"}})"},
        {"codex-demo-2",
         R"({"session_id":"demo2","cwd":"/home/sam/api","tool_name":"apply_patch","tool_input":{"path":"src/routes/orders.ts"}})"},
        {"toolu_demo_3",
         R"({"session_id":"demo","cwd":"/home/sam/shop","tool_name":"AskUserQuestion","tool_input":{"questions":[{"question":"Which database should the cache use?","options":[{"label":"Redis"},{"label":"SQLite"},{"label":"None for now"}]}]}})"},
    };
    for (const auto& sample : samples) {
        const QString id = QString::fromLatin1(sample.id);
        folder.write(QStringLiteral("pending-") + id + QStringLiteral(".json"), QByteArray(sample.payload));
        folder.touch(QStringLiteral("alive-") + id, now);
    }
}

} // namespace norva
