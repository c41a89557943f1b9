#include "store/ShortcutStore.h"

#include "actions/ActionRunner.h"
#include "actions/Notifier.h"
#include "foundation/Text.h"
#include "hotkeys/HotkeyCenter.h"
#include "hotkeys/SystemCheck.h"
#include "model/DefaultsKeys.h"
#include "model/ExportFile.h"
#include "platform/AlertSound.h"
#include "platform/HotkeyService.h"
#include "platform/Platform.h"
#include "platform/SymbolicHotkeys.h"
#include "platform/UserDefaults.h"
#include "platform/Wording.h"
#include "platform/Workspace.h"

#include <QCoreApplication>
#include <QPointer>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
const QString pauseAll = u"pauseAll"_s;

/// Reports the outcome of running the entry to the user.
void tell(const RunOutcome &outcome, const LaunchEntry &entry, const Platform &platform)
{
    switch (outcome.outcome) {
    case RunOutcome::Case::missing:
        platform.alertSound.beep();
        Notifier::post(u"Not found"_s, outcome.message, platform);
        break;
    case RunOutcome::Case::failed:
        platform.alertSound.beep();
        Notifier::post(u"%1 failed"_s.arg(quoted(entry.name)), outcome.message, platform);
        break;
    case RunOutcome::Case::success:
        if (ShortcutStore::showRunNotification(platform.userDefaults))
            Notifier::post(entry.name, title(entry.kind), platform);
        break;
    }
}
} // namespace

ShortcutStore::ShortcutStore(const Platform &platform, HotkeyCenter &center,
                             std::chrono::milliseconds undoTime)
    : m_platform(platform)
    , m_center(center)
    , m_file(platform.applicationSupport)
    , m_paused(platform.userDefaults.boolean(pauseAll).value_or(false))
{
    connect(&platform.hotkeys, &HotkeyService::changed, this, &ShortcutStore::willChange);
    connect(&platform.symbolicHotkeys, &SymbolicHotkeys::changed, this, &ShortcutStore::willChange);
    connect(&platform.wording, &Wording::changed, this, &ShortcutStore::willChange);
    connect(&platform.userDefaults, &UserDefaults::changed, this, [this] {
        if (const auto &error = m_platform.userDefaults.error())
            report(u"Your settings could not be saved."_s, *error);
    });
    m_undoTime.setSingleShot(true);
    m_undoTime.setInterval(undoTime);
    connect(&m_undoTime, &QTimer::timeout, this, [this] {
        Q_EMIT willChange();
        forgetFormer();
    });
    auto entries = m_file.read();
    if (entries)
        m_entries = std::move(entries).value();
    else
        report(u"Your shortcut list could not be loaded."_s, entries.error());
    if (const auto &error = platform.userDefaults.error())
        report(u"Your settings could not be loaded."_s, *error);
    for (const LaunchEntry &entry : std::as_const(m_entries))
        registerHandler(entry);
    applyEnabledState();
}

ShortcutStore &ShortcutStore::shared()
{
    Q_ASSERT(s_shared);
    return *s_shared;
}

void ShortcutStore::setPaused(bool paused)
{
    Q_EMIT willChange();
    m_paused = paused;
    m_platform.userDefaults.setBoolean(pauseAll, paused);
    applyEnabledState();
}

std::optional<AppError> ShortcutStore::error() const
{
    return m_errors.isEmpty() ? std::nullopt : std::optional(m_errors.constFirst());
}

void ShortcutStore::clearError(const AppError &seen)
{
    const auto found = std::ranges::find(m_errors, seen.id, &AppError::id);
    if (found == m_errors.end())
        return;
    Q_EMIT willChange();
    m_errors.erase(found);
}

void ShortcutStore::upsert(const LaunchEntry &entry)
{
    Q_EMIT willChange();
    forgetFormer();
    const auto existing = std::ranges::find(m_entries, entry.id, &LaunchEntry::id);
    if (existing == m_entries.end())
        m_entries.append(entry);
    else
        *existing = entry;
    registerHandler(entry);
    applyEnabledState();
    save();
}

void ShortcutStore::deleteEntry(const LaunchEntry &entry)
{
    // Copy these: the entry may be an element of the list, destroyed below.
    const QUuid id = entry.id;
    const KeyboardShortcuts::Name name = entry.shortcutName();
    m_center.handlers.remove(name.rawValue);
    m_center.preparations.remove(name.rawValue);
    m_center.titles.remove(name.rawValue);
    m_center.sync(name);
    Q_EMIT willChange();
    remember({entry});
    m_entries.removeIf([&id](const LaunchEntry &other) { return other.id == id; });
    // Save the list first: a combination without an entry is harmless, but if the program is killed
    // between the two writes, no entry may be left without its combination.
    if (save())
        storeShortcut(std::nullopt, name);
}

void ShortcutStore::setEnabled(bool isEnabled, const QUuid &id)
{
    if (!contains(id))
        return;
    Q_EMIT willChange();
    forgetFormer();
    std::ranges::find(m_entries, id, &LaunchEntry::id)->isEnabled = isEnabled;
    applyEnabledState();
    save();
}

bool ShortcutStore::contains(const QUuid &id) const
{
    return std::ranges::find(m_entries, id, &LaunchEntry::id) != m_entries.cend();
}

void ShortcutStore::run(const LaunchEntry &entry)
{
    prepareRun(entry);
    queueRun(entry);
}

void ShortcutStore::queueRun(const LaunchEntry &entry)
{
    const OpenConfiguration configuration{.activates = bringToFront(m_platform.userDefaults)};
    // Bound to the application, not to the store: a run that has begun is always reported.
    const auto start = [entry, configuration, &platform = m_platform, store = QPointer(this)] {
        ActionRunner::run(entry, platform.workspace, platform.wording, configuration,
                          [entry, &platform, store](const RunOutcome &outcome) {
                              tell(outcome, entry, platform);
                              // More targets may be missing by now.
                              if (store && outcome.outcome == RunOutcome::Case::missing)
                                  Q_EMIT store->willChange();
                          });
    };
    QMetaObject::invokeMethod(QCoreApplication::instance(), start, Qt::QueuedConnection);
}

void ShortcutStore::prepareRun(const LaunchEntry &entry)
{
    if (entry.kind == ActionKind::app && bringToFront(m_platform.userDefaults))
        m_platform.workspace.prepareToActivate(entry.target);
}

void ShortcutStore::fire(const QUuid &id)
{
    if (m_paused)
        return;
    const auto entry = std::ranges::find(m_entries, id, &LaunchEntry::id);
    if (entry != m_entries.cend() && entry->isEnabled)
        queueRun(*entry);
}

void ShortcutStore::report(const QString &message, const Error &error)
{
    Q_EMIT willChange();
    // An error that recurs while the window is hidden causes only one alert.
    m_errors.removeIf([&message](const AppError &other) { return other.message == message; });
    m_errors.append(AppError{.message = message, .details = error.description});
}

void ShortcutStore::resetAllShortcuts()
{
    remember({});
    {
        const auto together = m_platform.userDefaults.writeTogether();
        for (const LaunchEntry &entry : std::as_const(m_entries))
            storeShortcut(std::nullopt, entry.shortcutName());
    }
    // The list is unchanged, but its entries have lost their keys.
    Q_EMIT willChange();
}

std::optional<ShortcutStore::Undoable> ShortcutStore::undoable() const
{
    return m_former ? std::optional(m_former->change) : std::nullopt;
}

void ShortcutStore::undo()
{
    if (!m_former)
        return;
    Q_EMIT willChange();
    const Former former = *m_former;
    forgetFormer();
    m_enabledByKeys.reset();
    // Store the combinations first: no entry may be left without its combination if the program is
    // killed between the two writes.
    {
        const auto together = m_platform.userDefaults.writeTogether();
        for (const auto &[key, value] : former.combinations)
            m_platform.userDefaults.setData(key, value);
    }
    m_entries = former.entries;
    if (former.change.deleted)
        registerHandler(*former.change.deleted);
    applyEnabledState();
    // A reset has not changed the list.
    if (former.change.deleted)
        save();
}

QByteArray ShortcutStore::exportData() const
{
    ExportFile file;
    for (const LaunchEntry &entry : m_entries) {
        ExportItem item{entry.name, entry.kind, entry.target, entry.isEnabled, {}, {}};
        if (const auto shortcut = getShortcut(entry.shortcutName())) {
            item.keyCode = shortcut->carbonKeyCode;
            item.modifiers = shortcut->carbonModifiers;
        }
        file.items.append(item);
    }
    return file.encoded();
}

Result<qsizetype> ShortcutStore::importData(const QByteArray &data)
{
    const auto file = ExportFile::decoded(data);
    if (!file)
        return file.error();
    Q_EMIT willChange();
    forgetFormer();
    {
        const auto together = m_platform.userDefaults.writeTogether();
        for (const ExportItem &item : file->items)
            add(item);
    }
    applyEnabledState();
    save();
    return file->items.size();
}

QStringList ShortcutStore::warnings(const KeyboardShortcuts::Name &name,
                                    const std::optional<QUuid> &excluding) const
{
    const auto shortcut = getShortcut(name);
    if (!shortcut)
        return {};
    QStringList messages;
    if (const auto user = KeyboardShortcuts::userOfKeys(*shortcut, m_platform.symbolicHotkeys))
        messages << m_platform.wording.alreadyUsed(keyText(*shortcut), *user);
    for (const LaunchEntry &other : enabledByKeys().value(*shortcut)) {
        if (other.id == excluding)
            continue;
        const QString user = other.name.isEmpty() ? u"another entry"_s : quoted(other.name);
        messages << u"The same keys are used by %1."_s.arg(user);
    }
    return messages;
}

bool ShortcutStore::areDesktopKeys(const KeyboardShortcuts::Name &name) const
{
    const auto shortcut = getShortcut(name);
    if (!shortcut)
        return false;
    const auto user = KeyboardShortcuts::userOfKeys(*shortcut, m_platform.symbolicHotkeys);
    return user && user->kind == KeyUser::Kind::desktop;
}

QString ShortcutStore::otherKeys(const KeyboardShortcuts::Name &name) const
{
    const auto asked = getShortcut(name);
    if (!asked)
        return {};
    const auto used = m_platform.hotkeys.otherKeys(quint32(asked->carbonKeyCode),
                                                   quint32(asked->carbonModifiers));
    return used ? u"Your desktop uses %1 for this."_s.arg(keyText({used->keyCode, used->modifiers}))
                : QString();
}

bool ShortcutStore::canRegisterKeys() const
{
    return m_platform.hotkeys.reach() != HotkeyReach::nowhere;
}

const ShortcutStore::EntriesByKeys &ShortcutStore::enabledByKeys() const
{
    if (!m_enabledByKeys) {
        m_enabledByKeys.emplace();
        for (const LaunchEntry &entry : m_entries) {
            if (!entry.isEnabled)
                continue;
            if (const auto shortcut = getShortcut(entry.shortcutName()))
                (*m_enabledByKeys)[*shortcut].append(entry);
        }
    }
    return *m_enabledByKeys;
}

QString ShortcutStore::shortcutText(const LaunchEntry &entry) const
{
    const auto shortcut = getShortcut(entry.shortcutName());
    return shortcut ? keyText(*shortcut) : u"No keys"_s;
}

const Wording &ShortcutStore::keyWording() const
{
    return showMacKeySigns(m_platform.userDefaults) ? m_designWording : m_platform.wording;
}

QString ShortcutStore::keyText(const KeyboardShortcuts::Shortcut &shortcut) const
{
    return keyWording().keys(shortcut.carbonKeyCode, shortcut.carbonModifiers);
}

QString ShortcutStore::spokenKeys(const KeyboardShortcuts::Name &name) const
{
    if (&keyWording() == &m_platform.wording)
        return {};
    const auto shortcut = getShortcut(name);
    return shortcut ? m_platform.wording.keys(shortcut->carbonKeyCode, shortcut->carbonModifiers)
                    : QString();
}

std::optional<KeyboardShortcuts::Shortcut>
ShortcutStore::getShortcut(const KeyboardShortcuts::Name &name) const
{
    return KeyboardShortcuts::getShortcut(name, m_platform.userDefaults);
}

void ShortcutStore::setShortcut(const std::optional<KeyboardShortcuts::Shortcut> &shortcut,
                                const KeyboardShortcuts::Name &name)
{
    forgetFormer();
    storeShortcut(shortcut, name);
}

void ShortcutStore::storeShortcut(const std::optional<KeyboardShortcuts::Shortcut> &shortcut,
                                  const KeyboardShortcuts::Name &name)
{
    m_enabledByKeys.reset();
    KeyboardShortcuts::setShortcut(shortcut, name, m_platform.userDefaults, m_center);
}

void ShortcutStore::announceChange()
{
    Q_EMIT willChange();
}

bool ShortcutStore::showRunNotification(const UserDefaults &defaults)
{
    return defaults.boolean(DefaultsKeys::showRunNotification).value_or(true);
}

bool ShortcutStore::bringToFront(const UserDefaults &defaults)
{
    return defaults.boolean(DefaultsKeys::bringToFront).value_or(true);
}

bool ShortcutStore::showMacKeySigns(const UserDefaults &defaults)
{
    return defaults.boolean(DefaultsKeys::showMacKeySigns).value_or(false);
}

void ShortcutStore::add(const ExportItem &item)
{
    const LaunchEntry entry{
        .name = item.name, .kind = item.kind, .target = item.target, .isEnabled = item.isEnabled};
    if (item.keyCode)
        storeShortcut(KeyboardShortcuts::Shortcut{*item.keyCode, item.modifiers.value_or(0)},
                      entry.shortcutName());
    m_entries.append(entry);
    registerHandler(entry);
}

void ShortcutStore::registerHandler(const LaunchEntry &entry)
{
    const KeyboardShortcuts::Name name = entry.shortcutName();
    m_center.titles.insert(name.rawValue, entry.name);
    m_center.handlers.remove(name.rawValue);
    m_center.sync(name);
    // Capture the id, not a copy: a press runs the entry in its current state.
    m_center.handlers.insert(name.rawValue, [store = QPointer(this), id = entry.id] {
        const auto fire = [store, id] { store->fire(id); };
        if (store)
            QMetaObject::invokeMethod(store, fire, Qt::QueuedConnection);
    });
    m_center.preparations.insert(name.rawValue, [store = QPointer(this), id = entry.id] {
        if (!store)
            return;
        const auto pressed = std::ranges::find(store->m_entries, id, &LaunchEntry::id);
        if (pressed != store->m_entries.cend())
            store->prepareRun(*pressed);
    });
    m_center.sync(name);
}

void ShortcutStore::applyEnabledState()
{
    for (const LaunchEntry &entry : std::as_const(m_entries)) {
        const KeyboardShortcuts::Name name = entry.shortcutName();
        if (m_paused || !entry.isEnabled)
            m_center.disabled.insert(name.rawValue);
        else
            m_center.disabled.remove(name.rawValue);
        m_center.sync(name);
    }
}

/// Keeps what the change is about to remove. What could be undone before stays if the change
/// removes nothing.
void ShortcutStore::remember(const Undoable &change)
{
    Former former{change, m_entries, {}};
    for (const LaunchEntry &entry : change.deleted ? QList{*change.deleted} : m_entries) {
        const QString key = KeyboardShortcuts::defaultsKey(entry.shortcutName());
        if (const auto value = m_platform.userDefaults.data(key))
            former.combinations.emplaceBack(key, *value);
    }
    if (change.deleted ? !contains(change.deleted->id) : former.combinations.isEmpty())
        return;
    m_former = std::move(former);
    m_undoTime.start();
}

void ShortcutStore::forgetFormer()
{
    m_former.reset();
    m_undoTime.stop();
}

bool ShortcutStore::save()
{
    m_enabledByKeys.reset();
    const auto error = m_file.write(m_entries);
    if (error)
        report(u"Your shortcut list could not be saved."_s, *error);
    return !error;
}
