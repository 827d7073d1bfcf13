#include "notch/NotchLayout.h"

#include "app/Log.h"

#include <algorithm>
#include <cmath>

namespace norva::NotchLayout {

QSizeF closedSize(QSizeF face)
{
    return {std::max(closedWidth, face.width()), std::max(closedHeight, face.height())};
}

QSizeF peekSize(QSizeF closed)
{
    return {closed.width() + peekWidthGrowth, closed.height() + peekHeightGrowth};
}

QSize windowSize(QSizeF target, QSizeF shape, bool moving, QSize current)
{
    int width = int(std::ceil(std::max(target.width(), shape.width()) + 2 * windowMargin));
    width += width % 2;
    int height = int(std::ceil(std::max(target.height(), shape.height()) + windowMargin));
    if (moving) {
        width = std::max(width, current.width());
        height = std::max(height, current.height());
    }
    return {width, height};
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
        logLine(QStringLiteral(
                    "Norva: DS.Layout.panelHeight(stage:) got a negative stage height (%1); treating it as 0")
                    .arg(stage));
        stage = 0;
    }
    return stage + stageChrome;
}

double modulePanelHeight(double need)
{
    if (need < 0) {
        logLine(
            QStringLiteral("Norva: DS.Layout.modulePanelHeight got a negative need (%1); treating it as 0")
                .arg(need));
        need = 0;
    }
    return need + moduleChrome;
}

double pageNeed(double contentHeight, double chrome)
{
    return std::max(defaultPageNeed, contentHeight + chrome - moduleChrome);
}

double maxPanelHeight(double displayHeight)
{
    if (displayHeight <= 0)
        return maxPanelHeightWithoutDisplay;
    return std::max(modulePanelHeight(defaultPageNeed), std::floor(displayHeight * panelShareOfDisplay));
}

} // namespace norva::NotchLayout
