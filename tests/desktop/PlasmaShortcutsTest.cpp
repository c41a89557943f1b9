// The shortcuts of a running KWin, and those that programs have its service hold.

#include "platform/EventFlag.h"
#include "platform/linux/desktopkeys/KGlobalAccelKeys.h"
#include "support/Accessible.h"
#include "support/PlasmaKeys.h"
#include "support/ProgramOnTheBus.h"
#include "support/ProgramUnderTest.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QTest>
#include <algorithm>
#include <csignal>
#include <xkbcommon/xkbcommon-keysyms.h>

using namespace Qt::StringLiterals;

namespace
{
const QString service = u"org.kde.kglobalaccel"_s;

constexpr int metaShiftF1 = int(Qt::MetaModifier) | int(Qt::ShiftModifier) | Qt::Key_F1;
constexpr int metaF2 = int(Qt::MetaModifier) | Qt::Key_F2;
constexpr Accelerator f1{.modifiers = commandEventFlag | shiftEventFlag, .keysym = XKB_KEY_F1};
constexpr Accelerator f2{.modifiers = commandEventFlag, .keysym = XKB_KEY_F2};

void ask(const QString &method, const QVariantList &arguments)
{
    const QDBusMessage answer = askKGlobalAccel(method, arguments);
    QVERIFY2(answer.type() == QDBusMessage::ReplyMessage, qPrintable(answer.errorMessage()));
}

/// A program's one shortcut, as the program and the desktop's settings change it.
class ProgramsShortcut
{
public:
    explicit ProgramsShortcut(const QString &title = u"Action"_s)
        : m_id{u"program"_s, u"an_action"_s, u"Program"_s, title}
    {
        ask(u"doRegister"_s, {m_id});
    }
    ~ProgramsShortcut() { ask(u"unregister"_s, {m_id.at(0), m_id.at(1)}); }
    Q_DISABLE_COPY_MOVE(ProgramsShortcut)

    void setByTheProgram(const QList<int> &keys)
    {
        constexpr uint presentAndNotAutoloaded = 6;
        ask(u"setShortcut"_s, {m_id, QVariant::fromValue(keys), presentAndNotAutoloaded});
    }
    void setInTheSettings(const QList<int> &keys)
    {
        ask(u"setForeignShortcut"_s, {m_id, QVariant::fromValue(keys)});
    }

private:
    const QStringList m_id;
};

struct Source : KGlobalAccelKeys {
    Source() { start(); }
    bool has(const Accelerator &accelerator) const
    {
        return keys()
            && std::ranges::find(*keys(), accelerator, &DesktopKey::accelerator) != keys()->end();
    }
    bool has(const Accelerator &accelerator, const QString &action) const
    {
        return keys() && keys()->contains(DesktopKey{accelerator, action});
    }
};
} // namespace

class PlasmaShortcutsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsWhatKWinComesWith_data()
    {
        QTest::addColumn<quint32>("modifiers");
        QTest::addColumn<quint32>("keysym");
        QTest::addColumn<bool>("impliesShift");
        QTest::newRow("a letter") << quint32(commandEventFlag) << quint32(XKB_KEY_w) << false;
        QTest::newRow("a function key") << quint32(optionEventFlag) << quint32(XKB_KEY_F4) << false;
        QTest::newRow("a sign") << quint32(commandEventFlag) << quint32(XKB_KEY_minus) << true;
        QTest::newRow("a sign on a second level")
            << quint32(optionEventFlag) << quint32(XKB_KEY_asciitilde) << true;
        QTest::newRow("the Tab that goes back")
            << (optionEventFlag | shiftEventFlag) << quint32(XKB_KEY_Tab) << false;
        QTest::newRow("the second keys of a shortcut")
            << quint32(commandEventFlag) << quint32(XKB_KEY_equal) << true;
    }
    void knowsWhatKWinComesWith()
    {
        QFETCH(const quint32, modifiers);
        QFETCH(const quint32, keysym);
        QFETCH(const bool, impliesShift);
        const Source source;
        QTRY_VERIFY(
            source.has({.modifiers = modifiers, .keysym = keysym, .impliesShift = impliesShift}));
    }

    void namesTheActionsOfKWin()
    {
        const Source source;
        QTRY_VERIFY(source.has({.modifiers = optionEventFlag, .keysym = XKB_KEY_F4},
                               u"KWin: Close Window"_s));
    }

    void namesTheActionsOfPrograms_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("action");
        QTest::newRow("by both titles") << u"Do It"_s << u"Program: Do It"_s;
        QTest::newRow("by one title if they are the same") << u"Program"_s << u"Program"_s;
        QTest::newRow("by the action's id if it has no title")
            << QString() << u"Program: An action"_s;
    }
    void namesTheActionsOfPrograms()
    {
        QFETCH(const QString, title);
        QFETCH(const QString, action);
        ProgramsShortcut shortcut(title);
        shortcut.setByTheProgram({metaShiftF1, metaF2});
        const Source source;
        QTRY_VERIFY(source.has(f1, action) && source.has(f2, action));
    }

    void knowsWhatProgramsHave()
    {
        ProgramsShortcut shortcut;
        shortcut.setByTheProgram({metaShiftF1, metaF2});
        const Source source;
        QTRY_VERIFY(source.has(f1) && source.has(f2));
    }

    void followsTheSettings()
    {
        ProgramsShortcut shortcut;
        shortcut.setByTheProgram({metaShiftF1});
        const Source source;
        QTRY_VERIFY(source.has(f1));
        shortcut.setInTheSettings({metaF2});
        QTRY_VERIFY_WITH_TIMEOUT(source.has(f2) && !source.has(f1), 1000);
        shortcut.setInTheSettings({});
        QTRY_VERIFY_WITH_TIMEOUT(source.keys() && !source.has(f2), 1000);
    }

    void learnsWhatProgramsChangedWhenAsked()
    {
        Source source;
        QTRY_VERIFY(source.keys());
        ProgramsShortcut shortcut;
        shortcut.setByTheProgram({metaShiftF1});
        source.refresh();
        QTRY_VERIFY_WITH_TIMEOUT(source.has(f1), 1000);
        shortcut.setByTheProgram({});
        source.refresh();
        QTRY_VERIFY_WITH_TIMEOUT(source.keys() && !source.has(f1), 1000);
    }

    void haveTheSettingsWindowWarnOfThem()
    {
        constexpr StoredKeys storedMetaF2{120, 0x100};
        const auto warning =
            u"Meta+F2 is already used by Plasma (Program: Action). It may not work."_s;
        // Before the start: no other program gets keys that Corvane has.
        ProgramsShortcut shortcut;
        shortcut.setInTheSettings({metaF2});
        ProgramUnderTest program;
        program.isAccessible = true;
        program.addApp(u"/bin/true"_s, storedMetaF2);
        program.start();
        askForSettings();
        const Accessible all = Accessible::program(program.processId());
        QVERIFY(all.await(u"label"_s, u"Meta+F2"_s).isThere());
        QTRY_VERIFY(!all.findAll(u"label"_s, warning).isEmpty());
        shortcut.setInTheSettings({});
        QTRY_VERIFY_WITH_TIMEOUT(all.findAll(u"label"_s, warning).isEmpty(), 1000);
    }

    // The last, as nothing starts it again.
    void knowsNothingOnceKWinHasGone()
    {
        const Source source;
        QTRY_VERIFY(source.keys());
        const QDBusReply<uint> kwin =
            QDBusConnection::sessionBus().interface()->servicePid(service);
        QVERIFY(kwin.isValid());
        kill(pid_t(kwin.value()), SIGTERM);
        QTRY_VERIFY(!source.keys());
    }
};

QTEST_GUILESS_MAIN(PlasmaShortcutsTest)
#include "PlasmaShortcutsTest.moc"
