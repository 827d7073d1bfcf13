#include "notch/NotchLayout.h"

#include "app/Log.h"

#include <algorithm>

namespace norva::NotchLayout {

QSizeF closedSize(QSizeF face)
{
    return {std::max(closedWidth, face.width()), std::max(closedHeight, face.height())};
}

QSizeF peekSize(QSizeF closed)
{
    return {closed.width() + peekWidthGrowth, closed.height() + peekHeightGrowth};
}

double stageHeight(int rows)
{
    const int clamped = std::clamp(rows, minRows, maxRows);
    if (clamped != rows)
        logLine(QStringLiteral("Norva: DS.Layout.stageHeight got %1 cells, outside %2...%3; clamped to %4")
                    .arg(rows)
                    .arg(minRows)
                    .arg(maxRows)
                    .arg(clamped));
    return clamped * rowHeight + (clamped - 1) * rowGap;
}

double panelHeight(double stage)
{
    if (stage < 0) {
        logLine(QStringLiteral("Norva: DS.Layout.panelHeight(stage:) got a negative stage height (%1); treating it as 0")
                    .arg(stage));
        stage = 0;
    }
    return stage + stageChrome;
}

double modulePanelHeight(double need)
{
    if (need < 0) {
        logLine(QStringLiteral("Norva: DS.Layout.modulePanelHeight got a negative need (%1); treating it as 0").arg(need));
        need = 0;
    }
    return need + moduleChrome;
}

} // namespace norva::NotchLayout
