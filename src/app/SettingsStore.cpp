#include "app/SettingsStore.h"

#include "app/Log.h"
#include "app/Platform.h"
#include "app/SettingsKeys.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThread>
#include <QUuid>

#include <cmath>

namespace norva {

namespace K = SettingsKeys;

namespace {

constexpr double kHoverDelayFloor = 0.09;
constexpr double kHoverDelayCeiling = 1.5;
constexpr double kHoverDelayDefault = 0.12;
constexpr double kHoverDelaySpan = 1.41;
constexpr double kPeekDelayDefault = 0.07;

// Depth of the store's own writes on this thread, per store (keyed by the store's own-write key).
thread_local QHash<QString, int> t_ownWriteDepth;

// How a stored value reads in the unreadable-value log line.
QString describe(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::QString:
        return QLatin1Char('"') + value.toString() + QLatin1Char('"');
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', 12);
    default:
        return value.toString();
    }
}

int decimalsOf(double step)
{
    int decimals = 0;
    double scaled = std::fabs(step);
    while (decimals < 10 && std::fabs(scaled - std::round(scaled)) > 1e-9) {
        scaled *= 10.0;
        ++decimals;
    }
    return decimals;
}

double roundTo(double value, int decimals)
{
    const double factor = std::pow(10.0, decimals);
    return std::round(value * factor) / factor;
}

} // namespace

// ---- DisplayChoice ----

std::optional<DisplayChoice> DisplayChoice::parse(const QString& raw)
{
    if (raw == QLatin1String("all"))
        return DisplayChoice{Kind::all, {}, {}};
    if (raw == QLatin1String("builtIn"))
        return DisplayChoice{Kind::builtIn, {}, {}};
    static const QString prefix = QStringLiteral("display:");
    if (!raw.startsWith(prefix))
        return std::nullopt;
    const QString rest = raw.mid(prefix.size());
    const qsizetype bar = rest.indexOf(QLatin1Char('|'));
    if (bar < 0)
        return std::nullopt;
    DisplayChoice choice{Kind::display, rest.left(bar), rest.mid(bar + 1)};
    if (choice.displayId.isEmpty() && choice.displayName.isEmpty())
        return std::nullopt;
    return choice;
}

QString DisplayChoice::raw() const
{
    switch (kind) {
    case Kind::all:
        return QStringLiteral("all");
    case Kind::builtIn:
        return QStringLiteral("builtIn");
    case Kind::display:
        return QStringLiteral("display:") + displayId + QLatin1Char('|') + displayName;
    }
    return {};
}

// ---- construction and change propagation ----

SettingsStore::SettingsStore(PreferencesDatabase& database, QObject* parent)
    : QObject(parent), m_database(database), m_ownWriteKey(QStringLiteral("SettingsStore.ownWrite.") +
                                                           QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    m_watched = watchedKeys();
    m_snapshot = takeSnapshot(m_watched);
    connect(&m_database, &PreferencesDatabase::changed, this, &SettingsStore::onDatabaseChanged,
            Qt::DirectConnection);
}

SettingsStore::~SettingsStore()
{
    disconnect(&m_database, nullptr, this, nullptr);
}

const QStringList& SettingsStore::watchedKeys()
{
    static const QStringList keys = [] {
        return QStringList{K::openOnHover,  K::openHoverDelay, K::showMenuBarIcon,   K::fullscreenGuard,
                           K::hoverHaptics, K::displayChoice,  K::showOnAllDisplays, K::musicLeft,
                           K::musicRight,   K::peekOnHover,    K::peekDelay,         K::notchMotion};
    }();
    return keys;
}

void SettingsStore::watch(const QStringList& keys)
{
    const QVariantMap values = takeSnapshot(keys);
    QMutexLocker lock(&m_snapshotLock);
    for (const QString& key : keys) {
        if (m_watched.contains(key))
            continue;
        m_watched.append(key);
        if (values.contains(key))
            m_snapshot.insert(key, values.value(key));
    }
}

void SettingsStore::follow(const QStringList& keys, QObject* receiver,
                           std::function<void(const QString&)> onKey)
{
    watch(keys);
    connect(this, &SettingsStore::keyChanged, receiver, [keys, onKey = std::move(onKey)](const QString& key) {
        if (keys.contains(key))
            onKey(key);
    });
}

QVariantMap SettingsStore::takeSnapshot(const QStringList& keys) const
{
    QVariantMap snapshot;
    for (const QString& key : keys) {
        if (auto value = m_database.value(key))
            snapshot.insert(key, *value);
    }
    return snapshot;
}

void SettingsStore::onDatabaseChanged()
{
    QStringList watched;
    {
        QMutexLocker lock(&m_snapshotLock);
        watched = m_watched;
    }
    const QVariantMap fresh = takeSnapshot(watched);
    QStringList differing;
    {
        QMutexLocker lock(&m_snapshotLock);
        for (const QString& key : watched) {
            if (fresh.value(key) != m_snapshot.value(key) || fresh.contains(key) != m_snapshot.contains(key))
                differing << key;
        }
        // Refreshed even for our own writes, so the next outside change is compared with them.
        m_snapshot = fresh;
    }
    if (!differing.isEmpty() && t_ownWriteDepth.value(m_ownWriteKey) == 0)
        publish(differing);
}

void SettingsStore::publish(const QStringList& keys)
{
    const auto tell = [keys](SettingsStore* store) {
        for (const QString& key : keys)
            emit store->keyChanged(key);
        emit store->changed();
    };
    if (QThread::currentThread() == thread()) {
        tell(this);
        return;
    }
    QPointer<SettingsStore> self(this);
    QMetaObject::invokeMethod(
        this,
        [self, tell] {
            if (self)
                tell(self);
        },
        Qt::QueuedConnection);
}

void SettingsStore::write(const std::optional<QVariant>& value, const QString& key)
{
    ++t_ownWriteDepth[m_ownWriteKey];
    m_database.setValue(key, value);
    if (--t_ownWriteDepth[m_ownWriteKey] == 0)
        t_ownWriteDepth.remove(m_ownWriteKey);
    publish({key});
}

// ---- typed reading ----

std::optional<QVariant> SettingsStore::readRaw(const QString& key) const
{
    return m_database.value(key);
}

void SettingsStore::reportUnreadable(const QString& key, const QVariant& stored,
                                     const QString& expected) const
{
    {
        QMutexLocker lock(&m_reportedLock);
        if (m_reported.contains(key))
            return;
        m_reported.insert(key);
    }
    logLine(
        QStringLiteral("Norva settings: reading ") + key + QStringLiteral(" failed (it holds ") +
        describe(stored) + QStringLiteral(", not ") + expected +
        QStringLiteral("); the default applies until the setting is changed, and the stored value is left as "
                       "it is"));
}

std::optional<bool> SettingsStore::storedFlag(const QString& key, const QString& expected) const
{
    const auto raw = readRaw(key);
    if (!raw)
        return std::nullopt;
    if (raw->typeId() != QMetaType::Bool) {
        reportUnreadable(key, *raw, expected);
        return std::nullopt;
    }
    return raw->toBool();
}

std::optional<double> SettingsStore::storedNumber(const QString& key, const QString& expected) const
{
    const auto raw = readRaw(key);
    if (!raw)
        return std::nullopt;
    if (!isNumber(*raw) || !std::isfinite(raw->toDouble())) {
        reportUnreadable(key, *raw, expected);
        return std::nullopt;
    }
    return raw->toDouble();
}

std::optional<qint64> SettingsStore::storedInteger(const QString& key, const QString& expected) const
{
    const auto raw = readRaw(key);
    if (!raw)
        return std::nullopt;
    const double number = raw->toDouble();
    if (!isNumber(*raw) || !std::isfinite(number) || number != std::trunc(number) ||
        std::fabs(number) > 9.0e15) {
        reportUnreadable(key, *raw, expected);
        return std::nullopt;
    }
    return raw->typeId() == QMetaType::Double ? static_cast<qint64>(number) : raw->toLongLong();
}

std::optional<QString> SettingsStore::storedText(const QString& key, const QString& expected) const
{
    const auto raw = readRaw(key);
    if (!raw)
        return std::nullopt;
    if (raw->typeId() != QMetaType::QString) {
        reportUnreadable(key, *raw, expected);
        return std::nullopt;
    }
    return raw->toString();
}

std::optional<QVariant> SettingsStore::storedChecked(const QString& key,
                                                     const std::function<bool(const QVariant&)>& accepts,
                                                     const QString& expected) const
{
    const auto raw = readRaw(key);
    if (!raw)
        return std::nullopt;
    if (!accepts(*raw)) {
        reportUnreadable(key, *raw, expected);
        return std::nullopt;
    }
    return raw;
}

// ---- number helpers ----

bool SettingsStore::isNumber(const QVariant& value)
{
    const int type = value.typeId();
    return type == QMetaType::Double || type == QMetaType::LongLong || type == QMetaType::Int ||
           type == QMetaType::ULongLong || type == QMetaType::UInt || type == QMetaType::Float;
}

double SettingsStore::hoverDelay(double fraction)
{
    if (!std::isfinite(fraction))
        return kHoverDelayDefault;
    const double seconds = roundTo(std::min(fraction, 1.0) * kHoverDelaySpan + kHoverDelayFloor, 2);
    return std::clamp(seconds, kHoverDelayFloor, kHoverDelayCeiling);
}

double SettingsStore::clamp(double value, double lower, double upper, double step)
{
    if (!std::isfinite(value))
        return lower;
    double result = std::clamp(value, lower, upper);
    if (step > 0)
        result = lower + std::round((result - lower) / step) * step;
    result = roundTo(result, decimalsOf(step) + 1);
    return std::clamp(result, lower, upper);
}

// ---- shell ----

bool SettingsStore::openOnHover() const
{
    return flag(K::openOnHover, false);
}
void SettingsStore::setOpenOnHover(bool on)
{
    write(on, K::openOnHover);
}

double SettingsStore::openHoverDelay() const
{
    const auto stored = storedNumber(K::openHoverDelay);
    return stored ? std::clamp(*stored, kHoverDelayFloor, kHoverDelayCeiling) : kHoverDelayDefault;
}
void SettingsStore::setOpenHoverDelay(double seconds)
{
    write(std::isfinite(seconds) ? std::clamp(seconds, kHoverDelayFloor, kHoverDelayCeiling)
                                 : kHoverDelayDefault,
          K::openHoverDelay);
}

bool SettingsStore::showMenuBarIcon() const
{
    return flag(K::showMenuBarIcon, true);
}
void SettingsStore::setShowMenuBarIcon(bool on)
{
    write(on, K::showMenuBarIcon);
}

QString SettingsStore::fullscreenGuard() const
{
    return storedText(K::fullscreenGuard, QStringLiteral("normal, longer or click"))
        .value_or(QStringLiteral("longer"));
}
void SettingsStore::setFullscreenGuard(const QString& value)
{
    write(value, K::fullscreenGuard);
}

bool SettingsStore::hoverHaptics() const
{
    return flag(K::hoverHaptics, true);
}

DisplayChoice SettingsStore::displayChoice() const
{
    if (const auto raw = storedText(K::displayChoice, QStringLiteral("a display choice"))) {
        if (auto choice = DisplayChoice::parse(*raw))
            return *choice;
    }
    // The older key decides only while the newer one is absent or reads as no value.
    return flag(K::showOnAllDisplays, false) ? DisplayChoice{DisplayChoice::Kind::all, {}, {}}
                                             : DisplayChoice{DisplayChoice::Kind::builtIn, {}, {}};
}
void SettingsStore::setDisplayChoice(const DisplayChoice& choice)
{
    write(choice.raw(), K::displayChoice);
}

// ---- closed notch ----

std::optional<QString> SettingsStore::musicLeft() const
{
    return storedText(K::musicLeft);
}
std::optional<QString> SettingsStore::musicRight() const
{
    return storedText(K::musicRight);
}

bool SettingsStore::peekOnHover() const
{
    return flag(K::peekOnHover, true);
}
void SettingsStore::setPeekOnHover(bool on)
{
    write(on, K::peekOnHover);
}

double SettingsStore::peekDelay() const
{
    const auto stored = storedNumber(K::peekDelay);
    return stored ? clamp(*stored, 0.02, 0.5, 0.01) : kPeekDelayDefault;
}
void SettingsStore::setPeekDelay(double seconds)
{
    write(clamp(seconds, 0.02, 0.5, 0.01), K::peekDelay);
}

NotchMotion SettingsStore::motion() const
{
    static const QList<std::pair<QString, NotchMotion>> cases = {
        {QStringLiteral("full"), NotchMotion::full}, {QStringLiteral("reduced"), NotchMotion::reduced}};
    return storedChoice(K::notchMotion, QStringLiteral("full or reduced"), cases).value_or(NotchMotion::full);
}

// ---- launch at login ----

namespace {

// The desktop's login items, made once for every store.
LaunchAtLogin& loginItems()
{
    static const std::unique_ptr<LaunchAtLogin> items = Platform::makeLaunchAtLogin();
    return *items;
}

} // namespace

bool SettingsStore::launchAtLogin() const
{
    return loginItems().isOn();
}

void SettingsStore::setLaunchAtLogin(bool on)
{
    if (const auto failure = loginItems().set(on))
        logLine(QStringLiteral("Norva: launch-at-login change failed: ") + *failure);
    emit launchAtLoginChanged();
}

} // namespace norva
