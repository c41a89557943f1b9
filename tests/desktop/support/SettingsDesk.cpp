#include "support/SettingsDesk.h"

#include "support/ProgramOnTheBus.h"
#include "support/Windows.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <algorithm>

using namespace Qt::StringLiterals;
using State = Accessible::State;

namespace
{
const QString windowTitle = u"Corvane"_s;
}

SettingsDesk::SettingsDesk()
{
    program.isAccessible = true;
    app.openByDefault({"inode/directory", "x-scheme-handler/https", "x-scheme-handler/shortcuts"},
                      program.dataHome(), program.configHome());
}

void SettingsDesk::open()
{
    program.start();
    show();
}

void SettingsDesk::restart()
{
    QCOMPARE(program.stop(), 0);
    program.startAgain();
}

void SettingsDesk::show()
{
    askForSettings();
    awaitWindow();
}

void SettingsDesk::awaitWindow()
{
    all = Accessible::program(program.processId());
    QVERIFY(all.await(Role::button, u"Add"_s).isThere());
    QTRY_COMPARE(activeTitle(), windowTitle);
}

Accessible SettingsDesk::inFront(const QString &role, const QString &title) const
{
    const Accessible found = all.await(role, title);
    [&] { QTRY_VERIFY(found.is(State::active)); }();
    return found;
}

Accessible SettingsDesk::errorAlert(const QString &message) const
{
    const Accessible found = alert(u"Something went wrong"_s);
    [&] { QVERIFY(found.await(Role::label, message).isThere()); }();
    return found;
}

bool SettingsDesk::hasSheet() const
{
    const auto sheets = all.findAll(Role::dialog) + all.findAll(Role::alert);
    return std::ranges::any_of(sheets, [](const auto &sheet) { return sheet.is(State::showing); });
}

void SettingsDesk::awaitNoSheet() const
{
    QTRY_VERIFY(!hasSheet());
    QTRY_COMPARE(activeTitle(), windowTitle);
}

void SettingsDesk::press(const Accessible &part, const QString &name)
{
    QVERIFY(part.find(Role::button, name).press());
}

void SettingsDesk::toggle(const QString &name) const
{
    QVERIFY(checkBox(name).toggle());
}

bool SettingsDesk::shows(const QString &role, const QString &name) const
{
    return all.find(role, name).is(State::showing);
}

void SettingsDesk::awaitHeld(int key) const
{
    QTRY_VERIFY(keyboard.isGrabbed(key, controlAlt));
}

void SettingsDesk::awaitFree(int key) const
{
    QTRY_VERIFY(!keyboard.isGrabbed(key, controlAlt));
}

void SettingsDesk::verifyThatKeysRunTheApp(const QList<int> &keys)
{
    const qsizetype before = app.starts().size();
    keyboard.type(keys);
    QTRY_COMPARE(app.starts().size(), before + 1);
}

QByteArray SettingsDesk::content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void SettingsDesk::write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}
