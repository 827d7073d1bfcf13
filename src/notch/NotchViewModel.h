#pragma once

#include "app/Clock.h"
#include "notch/NotchLayout.h"

#include <QObject>
#include <QSizeF>
#include <QStringList>

#include <QtQmlIntegration/qqmlintegration.h>
#include <functional>
#include <optional>

namespace norva {

class SettingsStore;

// The state of one notch surface: closed, peeking or open, what the open notch shows, and when
// the pointer's arrival or departure changes that. The overlay window and its QML render from it.
class NotchViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Each notch window is handed its own")
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(QString stateName READ stateName NOTIFY stateChanged)
    Q_PROPERTY(ShellSurface surface READ surface NOTIFY stateChanged)
    Q_PROPERTY(QString currentPage READ currentPage NOTIFY currentPageChanged)
    Q_PROPERTY(QStringList pages READ pages WRITE setPages NOTIFY pagesChanged)
    Q_PROPERTY(bool isMouseInside READ isMouseInside NOTIFY isMouseInsideChanged)
    Q_PROPERTY(bool pinnedOpen READ pinnedOpen WRITE setPinnedOpen NOTIFY flagsChanged)
    Q_PROPERTY(bool menuOpen READ menuOpen WRITE setMenuOpen NOTIFY flagsChanged)
    Q_PROPERTY(bool pageMenuOpen READ pageMenuOpen WRITE setPageMenuOpen NOTIFY flagsChanged)
    Q_PROPERTY(bool activityDetailOpen READ activityDetailOpen NOTIFY activityDetailOpenChanged)
    Q_PROPERTY(bool pointerOverDetailActivity READ pointerOverDetailActivity WRITE
                   setPointerOverDetailActivity NOTIFY flagsChanged)
    Q_PROPERTY(bool cardShowing READ cardShowing WRITE setCardShowing NOTIFY flagsChanged)
    Q_PROPERTY(bool cardHoldsOpen READ cardHoldsOpen WRITE setCardHoldsOpen NOTIFY flagsChanged)
    Q_PROPERTY(
        int pressedMouseButtons READ pressedMouseButtons WRITE setPressedMouseButtons NOTIFY flagsChanged)
    Q_PROPERTY(bool typingInPanel READ typingInPanel WRITE setTypingInPanel NOTIFY flagsChanged)
    Q_PROPERTY(bool arranging READ arranging WRITE setArranging NOTIFY flagsChanged)
    Q_PROPERTY(bool holdsOpen READ holdsOpen NOTIFY flagsChanged)
    Q_PROPERTY(bool dragOver READ dragOver NOTIFY dragOverChanged)
    Q_PROPERTY(double pageNeed READ pageNeed WRITE setPageNeed NOTIFY sizeChanged)
    Q_PROPERTY(
        bool meetingBannerShowing READ meetingBannerShowing WRITE setMeetingBannerShowing NOTIFY sizeChanged)
    Q_PROPERTY(bool alertBannerShowing READ alertBannerShowing WRITE setAlertBannerShowing NOTIFY sizeChanged)
    Q_PROPERTY(double openWidth READ openWidth CONSTANT)
    Q_PROPERTY(double openHeight READ openHeight NOTIFY sizeChanged)
    Q_PROPERTY(double maxOpenHeight READ maxOpenHeight NOTIFY sizeChanged)
    Q_PROPERTY(QSizeF faceSize READ faceSize WRITE setFaceSize NOTIFY sizeChanged)
    Q_PROPERTY(double shownWidth READ shownWidth NOTIFY shownSizeChanged)
    Q_PROPERTY(double shownHeight READ shownHeight NOTIFY shownSizeChanged)
    Q_PROPERTY(double closedHeight READ closedHeight CONSTANT)
    Q_PROPERTY(
        bool fullscreenOnDisplay READ fullscreenOnDisplay WRITE setFullscreenOnDisplay NOTIFY flagsChanged)

public:
    enum class State { closed, peek, open };
    Q_ENUM(State)
    enum class ShellSurface { closed, page, screen, card, firstRun, notice, legacyOpen, snap, cameraCheck };
    Q_ENUM(ShellSurface)

    // The delays of the notch, in seconds.
    static constexpr double detailDelay = 0.45;
    static constexpr double hoverOpenFloor = 0.09;
    static constexpr double guardRecheck = 0.06;
    static constexpr double closeRecheck = 0.4;
    static constexpr double closeFromClosedOrPeek = 0.22;
    static constexpr double closeFromOpen = 0.7;
    static constexpr double closeExtendedGrace = 0.9;
    static constexpr double fullscreenGuardDelay = 0.6;
    // Leaving within this long after a hover opened the panel gets the extended grace: the pointer
    // most likely overshot the panel that just grew under it.
    static constexpr double overshootWindow = 1.0;
    // A pointer that comes back this soon after the notch closed under it does not hover-open it.
    static constexpr double courtesyWindow = 0.5;

    NotchViewModel(Clock& clock, SettingsStore& settings, QObject* parent = nullptr);

    // The hover-open delay for this notch: none when it opens only by clicking.
    static std::optional<double> resolvedOpenDelay(const SettingsStore& settings, bool fullscreenOnDisplay);

    void mouseEntered(std::optional<double> openDelay, bool courtesy);
    void mouseExited();
    // What the overlay calls: resolves the delay itself and enters with courtesy when the notch
    // closed under the pointer a moment ago.
    Q_INVOKABLE void pointerEntered();
    Q_INVOKABLE void pointerExited();
    Q_INVOKABLE void clicked();

    void open(bool byHover);
    Q_INVOKABLE void openPage(const QString& page);
    Q_INVOKABLE void openSurface(ShellSurface surface, const QString& place = {});
    Q_INVOKABLE void peek();
    Q_INVOKABLE void close();
    Q_INVOKABLE void closeDetail();
    Q_INVOKABLE void escape();
    // A drag the notch would take (files for the shelf) came over it, or left it, dropped or not.
    // A closed notch peeks while the drag is over it, so the person sees the drop will be taken, and
    // closes again when the drag leaves unless something else opened it meanwhile.
    Q_INVOKABLE void dragEntered();
    Q_INVOKABLE void dragLeft();
    bool dragOver() const { return m_dragOver; }
    void cancelHoverWork();
    void scheduleIdleClose(double after);
    void openHaptic();

    State state() const { return m_state; }
    // "closed", "peek" or "open", for QML states.
    QString stateName() const;
    ShellSurface surface() const { return m_surface; }
    QString currentPage() const { return m_currentPage; }
    QStringList pages() const { return m_pages; }
    void setPages(const QStringList& pages);
    bool isMouseInside() const { return m_mouseInside; }
    bool pinnedOpen() const { return m_pinnedOpen; }
    void setPinnedOpen(bool on);
    bool menuOpen() const { return m_menuOpen; }
    void setMenuOpen(bool on);
    bool pageMenuOpen() const { return m_pageMenuOpen; }
    void setPageMenuOpen(bool on);
    bool activityDetailOpen() const { return m_activityDetailOpen; }
    bool pointerOverDetailActivity() const { return m_pointerOverDetailActivity; }
    void setPointerOverDetailActivity(bool over);
    bool cardShowing() const { return m_cardShowing; }
    void setCardShowing(bool on);
    bool cardHoldsOpen() const { return m_cardHoldsOpen; }
    void setCardHoldsOpen(bool on);
    int pressedMouseButtons() const { return m_pressedMouseButtons; }
    void setPressedMouseButtons(int buttons);
    bool typingInPanel() const { return m_typingInPanel; }
    void setTypingInPanel(bool on);
    bool arranging() const { return m_arranging; }
    void setArranging(bool on);
    bool fullscreenOnDisplay() const { return m_fullscreenOnDisplay; }
    void setFullscreenOnDisplay(bool on);
    // Asked at each pointer entry whether a full-screen window fills this notch's display; asking
    // then, rather than watching all the time, costs nothing while the pointer is away.
    void setFullscreenProbe(std::function<bool()> probe) { m_fullscreenProbe = std::move(probe); }
    // Asked before a close whether the pointer is really within the notch's shape. The hover
    // handler can lose a pointer that never moved when the item under it is replaced (Pause turning
    // into Play, a pinned clip moving to the top, a new tile on the shelf); the panel then must not
    // close under it.
    void setPointerProbe(std::function<bool()> probe) { m_pointerProbe = std::move(probe); }
    bool holdsOpen() const;

    double pageNeed() const { return m_pageNeed; }
    void setPageNeed(double need);
    // The need of a page whose content wants `contentHeight` inside the panel's `chrome`.
    Q_INVOKABLE double pageNeedFor(double contentHeight, double chrome) const;
    // The height of this notch's display, which limits how far the open panel grows (0: unknown).
    double displayHeight() const { return m_displayHeight; }
    void setDisplayHeight(double height);
    bool meetingBannerShowing() const { return m_meetingBanner; }
    void setMeetingBannerShowing(bool on);
    bool alertBannerShowing() const { return m_alertBanner; }
    void setAlertBannerShowing(bool on);
    double openWidth() const;
    double openHeight() const { return currentOpenSize().height(); }
    // The tallest the open panel gets on this display, before its banners.
    double maxOpenHeight() const { return NotchLayout::maxPanelHeight(m_displayHeight); }
    // What the closed face asks for (its implicit size); the closed notch is never smaller than
    // Norva's own closed size.
    QSizeF faceSize() const { return m_faceSize; }
    void setFaceSize(QSizeF size);
    // The shape's size in the current state: closed around the face, the peek, or the open panel.
    QSizeF shownSize() const;
    double shownWidth() const { return shownSize().width(); }
    double shownHeight() const { return shownSize().height(); }
    static double closedHeight();
    QSizeF currentOpenSize() const;

    // Called when the open haptic should play (hover opening with "hoverHaptics" on).
    void setHapticPlayer(std::function<void()> play) { m_playHaptic = std::move(play); }

signals:
    void stateChanged();
    void currentPageChanged();
    void pagesChanged();
    void isMouseInsideChanged();
    void activityDetailOpenChanged();
    void dragOverChanged();
    void flagsChanged();
    void sizeChanged();
    // shownSize() changed: the state, the face or the open panel's size moved.
    void shownSizeChanged();

private:
    void setState(State state, ShellSurface surface);
    void setActivityDetailOpen(bool open);
    void setMouseInside(bool inside);
    void armDetailWork();
    void firePeekWork();
    void fireDetailWork();
    void fireHoverOpenWork();
    void fireCloseWork();
    bool hoverGuardHolds() const;
    bool closeGuardHolds() const;
    bool holdFlagSet() const;

    Clock& m_clock;
    SettingsStore& m_settings;
    State m_state = State::closed;
    ShellSurface m_surface = ShellSurface::closed;
    QString m_currentPage;
    QStringList m_pages;
    bool m_mouseInside = false;
    bool m_pinnedOpen = false;
    bool m_menuOpen = false;
    bool m_pageMenuOpen = false;
    bool m_activityDetailOpen = false;
    bool m_pointerOverDetailActivity = false;
    bool m_cardShowing = false;
    bool m_cardHoldsOpen = false;
    int m_pressedMouseButtons = 0;
    bool m_typingInPanel = false;
    bool m_arranging = false;
    bool m_fullscreenOnDisplay = false;
    double m_pageNeed = NotchLayout::defaultPageNeed;
    double m_displayHeight = 0;
    bool m_dragOver = false;
    bool m_peekingForDrag = false;
    QSizeF m_faceSize;
    bool m_meetingBanner = false;
    bool m_alertBanner = false;
    QDateTime m_openedByHoverAt;
    QDateTime m_closedAt;
    std::function<void()> m_playHaptic;
    std::function<bool()> m_fullscreenProbe;
    std::function<bool()> m_pointerProbe;

    // The three pending pieces of work; re-arming one replaces it.
    ScheduledWork m_hoverOpenWork;
    ScheduledWork m_peekOrDetailWork;
    ScheduledWork m_closeWork;
};

} // namespace norva
