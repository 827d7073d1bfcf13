#include "settings/SettingsWindowModel.h"

#include "app/Log.h"
#include "app/SettingsStore.h"
#include "media/MusicSettings.h"
#include "settings/SettingsCatalog.h"

#include <cmath>

namespace norva {
namespace {

const QString kSectionKey = QStringLiteral("settings.window.section.v1");
const QString kFirstSection = QStringLiteral("general");

// What an empty folder field shows, in the words of the folder it asks for.
QString exampleFor(SettingNeed need)
{
    switch (need) {
    case SettingNeed::calendarsFolder:
        return QStringLiteral("a folder, such as ~/.local/share/calendars");
    case SettingNeed::notesFolder:
        return QStringLiteral("a folder, such as ~/Notes");
    default:
        return {};
    }
}

QString kindWord(SettingDescription::Kind kind)
{
    switch (kind) {
    case SettingDescription::Kind::toggle:
        return QStringLiteral("toggle");
    case SettingDescription::Kind::number:
        return QStringLiteral("number");
    case SettingDescription::Kind::choice:
        return QStringLiteral("choice");
    case SettingDescription::Kind::text:
        return QStringLiteral("text");
    case SettingDescription::Kind::folder:
        return QStringLiteral("folder");
    }
    return {};
}

QVariantMap statusMap(const std::optional<SettingStatus>& status)
{
    if (!status)
        return {};
    return {{QStringLiteral("works"), status->works},
            {QStringLiteral("text"), status->text},
            {QStringLiteral("fix"), status->fix}};
}

} // namespace

SettingsWindowModel::SettingsWindowModel(SettingsStore& settings, SettingsChecks checks,
                                         ListDisplays displays, QObject* parent)
    : QObject(parent), m_settings(settings), m_checks(std::move(checks)), m_displays(std::move(displays)),
      m_rows(QStringLiteral("key"), this)
{
    // Every key the window shows follows outside edits, the feature-owned ones included.
    QStringList keys;
    for (const SettingDescription& row : SettingsCatalog::settings()) {
        if (row.key != SettingsCatalog::launchAtLoginKey)
            keys << row.key;
    }
    m_settings.watch(keys);
    connect(&m_settings, &SettingsStore::changed, this, &SettingsWindowModel::refresh);
    connect(&m_settings, &SettingsStore::launchAtLoginChanged, this, &SettingsWindowModel::refresh);
    refresh();
}

QVariantList SettingsWindowModel::groups() const
{
    QVariantList list;
    for (const SettingsCatalog::Group& group : SettingsCatalog::groups())
        list.append(QVariantMap{{QStringLiteral("id"), group.id}, {QStringLiteral("title"), group.title}});
    return list;
}

QString SettingsWindowModel::section() const
{
    const QString stored = m_settings.storedText(kSectionKey).value_or(kFirstSection);
    for (const SettingsCatalog::Group& group : SettingsCatalog::groups()) {
        if (group.id == stored)
            return stored;
    }
    return kFirstSection; // a section of an older or newer Norva
}

void SettingsWindowModel::setSection(const QString& groupId)
{
    if (groupId == section())
        return;
    m_settings.write(groupId, kSectionKey);
    emit sectionChanged();
    refresh();
}

QString SettingsWindowModel::summary() const
{
    const QString id = section();
    for (const SettingsCatalog::Group& group : SettingsCatalog::groups()) {
        if (group.id == id)
            return group.summary;
    }
    return {};
}

QVariant SettingsWindowModel::value(const QString& key) const
{
    const SettingDescription* row = SettingsCatalog::find(key);
    if (!row)
        return {};
    // Three settings are read as their owners read them: the login entry is a file, and the
    // display choice and paused-music keeping fall back to older keys when absent.
    if (key == SettingsCatalog::launchAtLoginKey)
        return m_settings.launchAtLogin();
    if (key == SettingsCatalog::displayChoiceKey)
        return m_settings.displayChoice().raw();
    // Shown as stored, or as the older on/off form of it read as seconds.
    if (key == MusicSettings::kKeepPausedKey)
        return qint64(static_cast<int>(MusicSettings::keepPausedIn(m_settings)));
    switch (row->kind) {
    case SettingDescription::Kind::toggle:
        return m_settings.storedFlag(key).value_or(row->fallback.toBool());
    case SettingDescription::Kind::number:
        if (row->storesWholeNumbers()) {
            const auto stored = m_settings.storedInteger(key);
            return stored ? QVariant(qint64(
                                SettingsStore::clamp(double(*stored), row->lowest, row->highest, row->step)))
                          : row->fallback;
        } else {
            const auto stored = m_settings.storedNumber(key);
            return stored ? QVariant(SettingsStore::clamp(*stored, row->lowest, row->highest, row->step))
                          : row->fallback;
        }
    case SettingDescription::Kind::choice:
    case SettingDescription::Kind::text:
    case SettingDescription::Kind::folder:
        break;
    }
    if (row->kind == SettingDescription::Kind::choice && !row->options.isEmpty() &&
        row->options.first().value.typeId() == QMetaType::LongLong) {
        const auto stored = m_settings.storedInteger(key);
        return stored ? QVariant(*stored) : row->fallback;
    }
    const auto stored = m_settings.storedText(key);
    if (!stored)
        return row->fallback;
    if (row->kind == SettingDescription::Kind::choice) {
        for (const QVariant& option : optionsOf(*row)) {
            if (option.toMap().value(QStringLiteral("value")) == QVariant(*stored))
                return *stored;
        }
        return row->fallback; // a word this Norva does not know reads as the default, as the owner reads it
    }
    return *stored;
}

void SettingsWindowModel::setValue(const QString& key, const QVariant& value)
{
    const SettingDescription* row = SettingsCatalog::find(key);
    if (!row) {
        logLine(QStringLiteral("Norva settings: the window asked to change ") + key +
                QStringLiteral(", which it does not show (nothing was written)"));
        return;
    }
    if (key == SettingsCatalog::launchAtLoginKey) {
        m_settings.setLaunchAtLogin(value.toBool());
        return;
    }
    switch (row->kind) {
    case SettingDescription::Kind::toggle:
        m_settings.write(value.toBool(), key);
        return;
    case SettingDescription::Kind::number: {
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        if (!isNumber || !std::isfinite(number))
            return; // the field keeps showing the stored value
        const double clamped = SettingsStore::clamp(number, row->lowest, row->highest, row->step);
        m_settings.write(
            row->storesWholeNumbers() ? QVariant(qint64(std::llround(clamped))) : QVariant(clamped), key);
        return;
    }
    case SettingDescription::Kind::choice:
        if (!value.isValid() || (value.typeId() == QMetaType::QString && value.toString().isEmpty()))
            m_settings.write(std::nullopt, key);
        else if (row->options.first().value.typeId() == QMetaType::LongLong)
            m_settings.write(qint64(value.toLongLong()), key);
        else
            m_settings.write(value.toString(), key);
        return;
    case SettingDescription::Kind::text:
    case SettingDescription::Kind::folder:
        m_settings.write(value.toString().trimmed(), key);
        return;
    }
}

QVariantList SettingsWindowModel::optionsOf(const SettingDescription& row) const
{
    QVariantList options;
    for (const SettingOption& option : row.options)
        options.append(
            QVariantMap{{QStringLiteral("value"), option.value}, {QStringLiteral("label"), option.label}});
    if (row.key == SettingsCatalog::displayChoiceKey && m_displays) {
        const DisplayChoice chosen = m_settings.displayChoice();
        bool chosenIsHere = chosen.kind != DisplayChoice::Kind::display;
        for (const DisplayInfo& display : m_displays()) {
            // The chosen display keeps its stored text, so the choice shows as taken.
            const bool isChosen =
                chosen.kind == DisplayChoice::Kind::display && display.id == chosen.displayId;
            chosenIsHere = chosenIsHere || isChosen;
            const QString raw =
                isChosen ? chosen.raw()
                         : DisplayChoice{DisplayChoice::Kind::display, display.id, display.name}.raw();
            const QString label = display.primary ? display.name + QStringLiteral(", primary") : display.name;
            options.append(QVariantMap{{QStringLiteral("value"), raw}, {QStringLiteral("label"), label}});
        }
        // The notch falls back to the built-in display meanwhile; the choice is kept for its return.
        if (!chosenIsHere)
            options.append(
                QVariantMap{{QStringLiteral("value"), chosen.raw()},
                            {QStringLiteral("label"), chosen.displayName + QStringLiteral(" (away)")}});
    }
    return options;
}

QVariantMap SettingsWindowModel::describe(const SettingDescription& row) const
{
    return {{QStringLiteral("key"), row.key},
            {QStringLiteral("label"), row.label},
            {QStringLiteral("explanation"), row.explanation},
            {QStringLiteral("kind"), kindWord(row.kind)},
            {QStringLiteral("value"), value(row.key)},
            {QStringLiteral("lowest"), row.lowest},
            {QStringLiteral("highest"), row.highest},
            {QStringLiteral("step"), row.step},
            {QStringLiteral("unit"), row.unit},
            {QStringLiteral("options"), optionsOf(row)},
            {QStringLiteral("example"), exampleFor(row.need)},
            {QStringLiteral("status"), statusMap(m_checks.status(row.need, m_settings))}};
}

void SettingsWindowModel::refresh()
{
    QVariantList rows;
    for (const SettingDescription& row : SettingsCatalog::inGroup(section()))
        rows.append(describe(row));
    if (rows == m_rows.rows())
        return;
    m_rows.setRows(rows);
    emit rowsChanged();
}

} // namespace norva
