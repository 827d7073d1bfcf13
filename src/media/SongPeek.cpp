#include "media/SongPeek.h"

namespace norva {

SongPeek::SongPeek(Clock& clock, QObject* parent) : QObject(parent), m_clock(clock) {}

void SongPeek::show()
{
    m_end = m_clock.after(duration, [this] { end(); });
    setShowing(true);
}

void SongPeek::end()
{
    m_end.cancel();
    setShowing(false);
}

void SongPeek::setShowing(bool showing)
{
    if (showing == m_showing)
        return;
    m_showing = showing;
    emit showingChanged();
}

} // namespace norva
