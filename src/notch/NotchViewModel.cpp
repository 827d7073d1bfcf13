#include "notch/NotchViewModel.h"

#include "app/SettingsStore.h"
#include "notch/NotchLayout.h"

#include <algorithm>

namespace norva {

NotchViewModel::NotchViewModel(Clock& clock, SettingsStore& settings, QObject* parent)
    : QObject(parent), m_clock(clock), m_settings(settings)
{
    connect(this, &NotchViewModel::stateChanged, this, &NotchViewModel::shownSizeChanged);
    connect(this, &NotchViewModel::sizeChanged, this, &NotchViewModel::shownSizeChanged);
}

std::optional<double> NotchViewModel::resolvedOpenDelay(const SettingsStore& settings,
                                                        bool fullscreenOnDisplay)
{
    if (!settings.openOnHover())
        return std::nullopt;
    double delay = settings.openHoverDelay();
    if (fullscreenOnDisplay) {
        const QString guard = settings.fullscreenGuard();
        if (guard == QLatin1String("click"))
            return std::nullopt;
        if (guard != QLatin1String("normal") && delay <= fullscreenGuardDelay)
            delay = fullscreenGuardDelay;
    }
    return delay;
}

QString NotchViewModel::stateName() const
{
    switch (m_state) {
    case State::closed:
        return QStringLiteral("closed");
    case State::peek:
        return QStringLiteral("peek");
    case State::open:
        return QStringLiteral("open");
    }
    return {};
}

// ---- pointer ----

void NotchViewModel::pointerEntered()
{
    const bool courtesy = m_closedAt.isValid() && m_clock.secondsSince(m_closedAt) < courtesyWindow;
    if (m_fullscreenProbe)
        setFullscreenOnDisplay(m_fullscreenProbe());
    mouseEntered(resolvedOpenDelay(m_settings, m_fullscreenOnDisplay), courtesy);
}

void NotchViewModel::pointerExited()
{
    mouseExited();
}

void NotchViewModel::mouseEntered(std::optional<double> openDelay, bool courtesy)
{
    setMouseInside(true);
    m_closeWork.cancel();
    bool peekArmed = false;
    const double peekDelay = m_settings.peekDelay();
    if (m_state == State::closed && m_settings.peekOnHover()) {
        m_peekOrDetailWork = m_clock.after(Seconds(peekDelay), [this] { firePeekWork(); });
        peekArmed = true;
    }
    if (m_pointerOverDetailActivity && m_state != State::open)
        armDetailWork();
    if (!courtesy && openDelay) {
        const double floor = peekArmed ? peekDelay : hoverOpenFloor;
        m_hoverOpenWork =
            m_clock.after(Seconds(std::max(*openDelay, floor)), [this] { fireHoverOpenWork(); });
    }
}

void NotchViewModel::mouseExited()
{
    if (m_pinnedOpen)
        return;
    setMouseInside(false);
    cancelHoverWork();
    const bool nothingExpanded = m_state == State::closed && !m_activityDetailOpen;
    if (nothingExpanded || (m_state == State::open && holdFlagSet()))
        return;
    double delay = closeFromOpen;
    if (m_state != State::open)
        delay = closeFromClosedOrPeek;
    else if (m_openedByHoverAt.isValid() && m_clock.secondsSince(m_openedByHoverAt) < overshootWindow)
        delay = closeExtendedGrace;
    scheduleIdleClose(delay);
}

void NotchViewModel::clicked()
{
    if (m_state != State::open)
        open(false);
}

void NotchViewModel::cancelHoverWork()
{
    m_hoverOpenWork.cancel();
    m_peekOrDetailWork.cancel();
}

void NotchViewModel::scheduleIdleClose(double after)
{
    m_closeWork = m_clock.after(Seconds(after), [this] { fireCloseWork(); });
}

void NotchViewModel::armDetailWork()
{
    m_peekOrDetailWork = m_clock.after(Seconds(detailDelay), [this] { fireDetailWork(); });
}

// ---- the pending work ----

void NotchViewModel::firePeekWork()
{
    if (!m_mouseInside || m_state != State::closed)
        return;
    if (hoverGuardHolds()) {
        m_peekOrDetailWork = m_clock.after(Seconds(guardRecheck), [this] { firePeekWork(); });
        return;
    }
    peek();
}

void NotchViewModel::fireDetailWork()
{
    if (!m_mouseInside || !m_pointerOverDetailActivity || m_state == State::open)
        return;
    if (hoverGuardHolds()) {
        m_peekOrDetailWork = m_clock.after(Seconds(guardRecheck), [this] { fireDetailWork(); });
        return;
    }
    setActivityDetailOpen(true);
}

void NotchViewModel::fireHoverOpenWork()
{
    if (!m_mouseInside || m_state == State::open)
        return;
    if (hoverGuardHolds()) {
        m_hoverOpenWork = m_clock.after(Seconds(guardRecheck), [this] { fireHoverOpenWork(); });
        return;
    }
    open(true);
}

void NotchViewModel::fireCloseWork()
{
    if (m_mouseInside)
        return;
    if (m_activityDetailOpen && m_state != State::open) {
        closeDetail();
        if (m_state == State::closed)
            return;
    }
    if (holdsOpen() || closeGuardHolds()) {
        scheduleIdleClose(closeRecheck);
        return;
    }
    close();
}

// A pressed button means a drag or a selection is under way: opening or closing then would
// snatch the surface from under it.
bool NotchViewModel::hoverGuardHolds() const
{
    return m_pressedMouseButtons != 0;
}

bool NotchViewModel::closeGuardHolds() const
{
    return m_pressedMouseButtons != 0 || (m_pointerProbe && m_pointerProbe());
}

// Flags that keep the open panel with no close scheduled at all while the pointer is away.
bool NotchViewModel::holdFlagSet() const
{
    return m_menuOpen || m_pageMenuOpen || m_typingInPanel || m_arranging;
}

bool NotchViewModel::holdsOpen() const
{
    return m_pinnedOpen || (m_cardShowing && m_cardHoldsOpen);
}

// ---- transitions ----

void NotchViewModel::open(bool byHover)
{
    cancelHoverWork();
    m_closeWork.cancel();
    if (byHover) {
        m_openedByHoverAt = m_clock.now();
        openHaptic();
    } else {
        m_openedByHoverAt = QDateTime();
    }
    setActivityDetailOpen(false);
    if (m_currentPage.isEmpty() && !m_pages.isEmpty()) {
        m_currentPage = m_pages.first();
        emit currentPageChanged();
    }
    setState(State::open, ShellSurface::page);
}

void NotchViewModel::openPage(const QString& page)
{
    // A page that is not among the pages lands where the pager would have landed by itself.
    if (m_pages.contains(page) && page != m_currentPage) {
        m_currentPage = page;
        emit currentPageChanged();
    }
    open(false);
}

void NotchViewModel::openSurface(ShellSurface surface, const QString& place)
{
    if (surface == ShellSurface::page) {
        openPage(place);
        return;
    }
    open(false);
    setState(State::open, surface);
}

void NotchViewModel::peek()
{
    if (m_state == State::closed)
        setState(State::peek, ShellSurface::closed);
}

void NotchViewModel::close()
{
    cancelHoverWork();
    m_closeWork.cancel();
    setActivityDetailOpen(false);
    // Only a close under the pointer earns the courtesy: the shrinking notch slips out from under
    // it, and its coming back is not a wish to open. A notch that closed after the pointer left
    // opens again on the next visit, however soon.
    if (m_state != State::closed && m_mouseInside)
        m_closedAt = m_clock.now();
    setState(State::closed, ShellSurface::closed);
}

void NotchViewModel::dragEntered()
{
    if (!m_dragOver) {
        m_dragOver = true;
        emit dragOverChanged();
    }
    if (m_state == State::closed) {
        peek();
        m_peekingForDrag = true;
    }
}

void NotchViewModel::dragLeft()
{
    if (m_dragOver) {
        m_dragOver = false;
        emit dragOverChanged();
    }
    const bool closeAgain = m_peekingForDrag && m_state == State::peek && !m_mouseInside;
    m_peekingForDrag = false;
    if (closeAgain)
        close();
}

void NotchViewModel::closeDetail()
{
    setActivityDetailOpen(false);
}

void NotchViewModel::escape()
{
    if (m_activityDetailOpen && m_state != State::open)
        closeDetail();
    else
        close();
}

void NotchViewModel::openHaptic()
{
    if (m_settings.hoverHaptics() && m_playHaptic)
        m_playHaptic();
}

void NotchViewModel::setState(State state, ShellSurface surface)
{
    if (m_state == state && m_surface == surface)
        return;
    const bool sizeMoves = (m_state == State::open) != (state == State::open);
    m_state = state;
    m_surface = surface;
    emit stateChanged();
    if (sizeMoves)
        emit sizeChanged();
}

void NotchViewModel::setActivityDetailOpen(bool open)
{
    if (m_activityDetailOpen == open)
        return;
    m_activityDetailOpen = open;
    emit activityDetailOpenChanged();
}

void NotchViewModel::setMouseInside(bool inside)
{
    if (m_mouseInside == inside)
        return;
    m_mouseInside = inside;
    emit isMouseInsideChanged();
}

// ---- flags ----

void NotchViewModel::setPages(const QStringList& pages)
{
    if (m_pages == pages)
        return;
    m_pages = pages;
    emit pagesChanged();
    if (!m_pages.contains(m_currentPage)) {
        m_currentPage = m_pages.isEmpty() ? QString() : m_pages.first();
        emit currentPageChanged();
    }
}

#define NORVA_FLAG_SETTER(setter, member)                                                                    \
    void NotchViewModel::setter(bool on)                                                                     \
    {                                                                                                        \
        if (member == on)                                                                                    \
            return;                                                                                          \
        member = on;                                                                                         \
        emit flagsChanged();                                                                                 \
    }

NORVA_FLAG_SETTER(setPinnedOpen, m_pinnedOpen)
NORVA_FLAG_SETTER(setMenuOpen, m_menuOpen)
NORVA_FLAG_SETTER(setPageMenuOpen, m_pageMenuOpen)
NORVA_FLAG_SETTER(setCardShowing, m_cardShowing)
NORVA_FLAG_SETTER(setCardHoldsOpen, m_cardHoldsOpen)
NORVA_FLAG_SETTER(setTypingInPanel, m_typingInPanel)
NORVA_FLAG_SETTER(setArranging, m_arranging)
NORVA_FLAG_SETTER(setFullscreenOnDisplay, m_fullscreenOnDisplay)
#undef NORVA_FLAG_SETTER

void NotchViewModel::setPointerOverDetailActivity(bool over)
{
    if (m_pointerOverDetailActivity == over)
        return;
    m_pointerOverDetailActivity = over;
    emit flagsChanged();
    if (over && m_mouseInside && m_state != State::open)
        armDetailWork();
    else if (!over && !m_activityDetailOpen)
        m_peekOrDetailWork.cancel();
}

void NotchViewModel::setPressedMouseButtons(int buttons)
{
    if (m_pressedMouseButtons == buttons)
        return;
    m_pressedMouseButtons = buttons;
    emit flagsChanged();
}

// ---- size ----

void NotchViewModel::setPageNeed(double need)
{
    if (qFuzzyCompare(m_pageNeed, need))
        return;
    m_pageNeed = need;
    emit sizeChanged();
}

double NotchViewModel::pageNeedFor(double contentHeight, double chrome) const
{
    return NotchLayout::pageNeed(contentHeight, chrome);
}

void NotchViewModel::setDisplayHeight(double height)
{
    if (m_displayHeight == height)
        return;
    m_displayHeight = height;
    emit sizeChanged();
}

void NotchViewModel::setMeetingBannerShowing(bool on)
{
    if (m_meetingBanner == on)
        return;
    m_meetingBanner = on;
    emit sizeChanged();
}

void NotchViewModel::setAlertBannerShowing(bool on)
{
    if (m_alertBanner == on)
        return;
    m_alertBanner = on;
    emit sizeChanged();
}

void NotchViewModel::setFaceSize(QSizeF size)
{
    if (size == m_faceSize)
        return;
    m_faceSize = size;
    emit sizeChanged();
}

double NotchViewModel::closedHeight()
{
    return NotchLayout::closedHeight;
}

QSizeF NotchViewModel::shownSize() const
{
    const QSizeF closed = NotchLayout::closedSize(m_faceSize);
    switch (m_state) {
    case State::open:
        return currentOpenSize();
    case State::peek:
        return NotchLayout::peekSize(closed);
    case State::closed:
        break;
    }
    return closed;
}

double NotchViewModel::openWidth() const
{
    return NotchLayout::openWidth;
}

QSizeF NotchViewModel::currentOpenSize() const
{
    double height = 0;
    switch (m_surface) {
    case ShellSurface::card:
    case ShellSurface::notice:
        height = NotchLayout::modulePanelHeight(NotchLayout::modeCardNeed);
        break;
    case ShellSurface::firstRun:
        height = NotchLayout::modulePanelHeight(NotchLayout::fullPanelNeed);
        break;
    case ShellSurface::cameraCheck:
    case ShellSurface::snap:
        height = NotchLayout::fixedHeight;
        break;
    default:
        height = NotchLayout::modulePanelHeight(m_pageNeed);
        break;
    }
    height = std::min(height, maxOpenHeight());
    if (m_meetingBanner)
        height += NotchLayout::meetingBanner;
    if (m_alertBanner)
        height += NotchLayout::alertBanner;
    return {NotchLayout::openWidth, height};
}

} // namespace norva
