#pragma once

#include <QSize>
#include <QSizeF>

// The notch's sizes, closed, peeking and open, in one place: C++ and the QML read them from here
// (through NotchViewModel). The open panel is always 760 wide, its height following what it shows.
// Inputs out of range are corrected and logged, never fatal.
namespace norva::NotchLayout {

inline constexpr double openWidth = 760;
// The closed notch on a display without a camera notch: Norva's own size, which the closed face
// widens (or deepens) when its ears or an expanded detail need more.
inline constexpr double closedWidth = 190;
inline constexpr double closedHeight = 32;
// Peeking, the closed notch grows by this much.
inline constexpr double peekWidthGrowth = 48;
inline constexpr double peekHeightGrowth = 16;
// The open panel grows with what its page holds, down to this share of its display's height
// (before its banners); below that the page scrolls. With no display known the limit is fixed.
inline constexpr double panelShareOfDisplay = 0.6;
inline constexpr double maxPanelHeightWithoutDisplay = 520;
// What a page needs when it says nothing of its content, and the least any page gets.
inline constexpr double defaultPageNeed = 200;
inline constexpr double fixedHeight = 206;
inline constexpr double rowHeight = 84;
inline constexpr double rowGap = 8;
inline constexpr double stageChrome = 98;   // pager, title and margins around a stage of rows
inline constexpr double moduleChrome = 134; // the same around a module page
inline constexpr double modeCardNeed = 170;
inline constexpr double fullPanelNeed = 240;
inline constexpr double meetingBanner = 50;
inline constexpr double alertBanner = 44;
inline constexpr int minRows = 1;
inline constexpr int maxRows = 3;

// Room beside and below the shape inside its window, for the soft edge while the shape moves.
inline constexpr double windowMargin = 20;

// The closed notch around a face that asks for `face`; the peek around a closed notch.
QSizeF closedSize(QSizeF face);
QSizeF peekSize(QSizeF closed);
// The notch window around the shape, which is heading for `target` and is `shape` now: the window
// grows at once and, while the shape moves, never shrinks below `current`, so a window change
// never cuts into a moving shape. Its width is even, so it centres on the display exactly.
QSize windowSize(QSizeF target, QSizeF shape, bool moving, QSize current);

// Height of a stage of rows (1...3; other counts are clamped and logged).
double stageHeight(int rows);
// Panel height around a stage; a negative stage height is logged and treated as 0.
double panelHeight(double stageHeight);
// Panel height around a module that needs `need` points; a negative need is logged and treated as 0.
double modulePanelHeight(double need);
// The need of a page whose content wants `contentHeight` inside the panel's `chrome` (the tabs and
// margins the panel draws around its pages): enough to show it all, never less than the default.
double pageNeed(double contentHeight, double chrome);
// The tallest the open panel gets on a display `displayHeight` high (0: not known), before banners.
double maxPanelHeight(double displayHeight);

} // namespace norva::NotchLayout
