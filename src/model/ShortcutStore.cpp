#include "model/ShortcutStore.h"

#include "actions/ActionRunner.h"
#include "foundation/Text.h"
#include "hotkeys/HotkeyCenter.h"
#include "platform/Platform.h"

#include <QDir>
#include <QFile>
#include <QPointer>
#include <algorithm>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace
{
/// Only what is certainly not there is no list yet; what just cannot be reached is an error later.
bool isThere(const QString &path)
{
    std::error_code error;
    const auto status = std::filesystem::symlink_status(QFile::encodeName(path).constData(), error);
    return status.type() != std::filesystem::file_type::not_found;
}
} // namespace

ShortcutStore::ShortcutStore(const Platform &platform, HotkeyCenter &center)
    : m_platform(platform)
    , m_center(center)
{
    load();
    for (const LaunchEntry &entry : std::as_const(m_entries))
        registerHandler(entry);
    applyEnabledState();
}

ShortcutStore &ShortcutStore::shared()
{
    static auto *const store = new ShortcutStore(Platform::system(), HotkeyCenter::shared());
    return *store;
}

void ShortcutStore::load()
{
    auto entries = readEntries();
    if (entries)
        m_entries = std::move(entries).value();
    else
        report(u"Your shortcut list could not be loaded."_s, entries.error());
}

Result<QString> ShortcutStore::storageURL() const
{
    if (m_platform.applicationSupport.isEmpty())
        return Error{u"There is no folder for the data of programs."_s};
    const QString folder = m_platform.applicationSupport + u"/Corvane"_s;
    if (!QDir().mkpath(folder))
        return Error{u"The folder %1 could not be made."_s.arg(quoted(folder))};
    return folder + u"/entries.json"_s;
}

Result<QList<LaunchEntry>> ShortcutStore::readEntries() const
{
    const auto path = storageURL();
    if (!path)
        return path.error();
    if (!isThere(*path))
        return QList<LaunchEntry>();
    QFile file(*path);
    if (!file.open(QIODevice::ReadOnly))
        return Error{file.errorString()};
    const QByteArray text = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return Error{file.errorString()};
    const auto json = JsonCoding::parse(text);
    if (!json)
        return json.error();
    return LaunchEntry::listFromJson(*json);
}

void ShortcutStore::registerHandler(const LaunchEntry &entry)
{
    const KeyboardShortcuts::Name name = entry.shortcutName();
    m_center.handlers.remove(name.rawValue);
    m_center.sync(name);
    // By id, not a copy: a press runs the entry as it is then.
    m_center.handlers.insert(name.rawValue, [store = QPointer(this), id = entry.id] {
        if (store)
            store->fire(id);
    });
    m_center.sync(name);
}

void ShortcutStore::applyEnabledState()
{
    for (const LaunchEntry &entry : std::as_const(m_entries)) {
        const KeyboardShortcuts::Name name = entry.shortcutName();
        if (entry.isEnabled)
            m_center.disabled.remove(name.rawValue);
        else
            m_center.disabled.insert(name.rawValue);
        m_center.sync(name);
    }
}

void ShortcutStore::fire(const QUuid &id)
{
    const auto entry = std::ranges::find(m_entries, id, &LaunchEntry::id);
    if (entry != m_entries.cend() && entry->isEnabled)
        run(*entry);
}

void ShortcutStore::run(const LaunchEntry &entry)
{
    const auto start = [this, entry] {
        ActionRunner::run(entry, m_platform.workspace, [](const RunOutcome &outcome) {
            if (outcome.outcome != RunOutcome::Case::success)
                qWarning("corvane: %s", qUtf8Printable(outcome.message));
        });
    };
    QMetaObject::invokeMethod(this, start, Qt::QueuedConnection);
}

void ShortcutStore::report(const QString &message, const Error &error)
{
    m_error = AppError{.message = message, .details = error.description};
}
