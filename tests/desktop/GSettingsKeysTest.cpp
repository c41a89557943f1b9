// The shortcuts of GNOME, Cinnamon and MATE, in their own schemas and in dconf, while the desktops'
// tools change them.

#include "platform/linux/desktopkeys/GSettingsKeys.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <csignal>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto gnomeCustom = "org.gnome.settings-daemon.plugins.media-keys.custom-keybinding";
constexpr auto cinnamonCustom = "org.cinnamon.desktop.keybindings.custom-keybinding";
constexpr auto mateCustom = "org.mate.control-center.keybinding";

bool gsettings(const QString &arguments)
{
    return QProcess::execute(u"gsettings"_s, QProcess::splitCommand(arguments)) == 0;
}

bool setCustom(const char *schema, const QString &path, const QString &binding)
{
    return gsettings(u"set %1:%2 binding \"%3\""_s.arg(QLatin1StringView(schema), path, binding));
}

bool resetCustom(const char *schema, const QString &path)
{
    return gsettings(u"reset-recursively %1:%2"_s.arg(QLatin1StringView(schema), path));
}

bool setCustomText(const QString &custom, const QString &key, const QString &text)
{
    const QStringList command{u"set"_s, custom, key, text};
    return QProcess::execute(u"gsettings"_s, command) == 0;
}

/// What uses the keys, in the order of the settings.
QList<DesktopKey> users(const DesktopKeys &desktopKeys, const QString &text)
{
    QList<DesktopKey> found;
    const auto accelerator = gtkAccelerator(text);
    for (const DesktopKey &key : desktopKeys.keys().value_or(QList<DesktopKey>())) {
        if (key.accelerator == accelerator)
            found << key;
    }
    return found;
}

bool has(const DesktopKeys &desktopKeys, const QString &text)
{
    return !users(desktopKeys, text).isEmpty();
}

/// The names of the actions that use the keys, with "none" for those without a name.
QStringList actions(const DesktopKeys &desktopKeys, const QString &text)
{
    QStringList names;
    for (const DesktopKey &key : users(desktopKeys, text))
        names << key.action.value_or(u"none"_s);
    return names;
}

/// Runs this very test in a process of its own, for which GLib looks at its environment anew.
bool succeedsIn(QProcessEnvironment environment)
{
    environment.insert(u"OWN_PROCESS"_s, u"yes"_s);
    const QString tag = QString::fromUtf8(QTest::currentDataTag());
    const QString test = QString::fromUtf8(QTest::currentTestFunction());
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(),
                  {tag.isEmpty() ? test : test + u':' + tag});
    return process.waitForFinished(20'000) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
}

/// What the threads beside this one have used of the processors.
QByteArray usedTime()
{
    QByteArray used;
    const auto threads = QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads) {
        QFile file(u"/proc/self/task/%1/schedstat"_s.arg(thread));
        if (thread.toLongLong() != getpid() && file.open(QFile::ReadOnly))
            used += file.readAll();
    }
    return used;
}

bool isAtRest()
{
    const QByteArray before = usedTime();
    QThread::msleep(200);
    return !before.isEmpty() && usedTime() == before;
}

bool isOwnProcess()
{
    return qEnvironmentVariableIsSet("OWN_PROCESS");
}
} // namespace

Q_DECLARE_METATYPE(const GSettingsFamily *)

class GSettingsKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // As on the real desktops.
        qputenv("GSETTINGS_BACKEND", "dconf");
        g_log_set_always_fatal(G_LOG_LEVEL_CRITICAL);
    }

    void readsWhatADesktopComesWith_data()
    {
        QTest::addColumn<const GSettingsFamily *>("family");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("GNOME") << &GSettingsFamily::gnome
                               << QStringList{
                                      u"<Alt>F4"_s,  u"<Super>Above_Tab"_s, u"<Super>s"_s,
                                      u"<Super>p"_s, u"<Super>Escape"_s,    u"Super_L"_s,
                                      u"<Super>l"_s, u"XF86AudioPlay"_s,
                                  };
        QTest::newRow("Cinnamon") << &GSettingsFamily::cinnamon
                                  << QStringList{
                                         u"<Alt><Super>equal"_s,
                                         u"<Alt>F4"_s,
                                         u"<Super>e"_s,
                                         u"<Super>Escape"_s,
                                     };
        QTest::newRow("MATE") << &GSettingsFamily::mate
                              << QStringList{
                                     u"<Control><Alt>d"_s,
                                     u"<Alt>space"_s,
                                     u"<Control><Alt>Delete"_s,
                                 };
    }
    void readsWhatADesktopComesWith()
    {
        QFETCH(const GSettingsFamily *const, family);
        QFETCH(const QStringList, texts);
        GSettingsKeys desktopKeys(*family);
        desktopKeys.start();
        QTRY_VERIFY(desktopKeys.keys());
        for (const QString &text : texts)
            QVERIFY2(has(desktopKeys, text), qPrintable(text));
    }

    void namesADesktopsOwnActionsAfterTheirSettings_data()
    {
        QTest::addColumn<const GSettingsFamily *>("family");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("names");
        const auto add = [](const char *row, const GSettingsFamily &family, const QString &text,
                            const QStringList &names) {
            QTest::newRow(row) << &family << text << names;
        };
        add("GNOME's windows", GSettingsFamily::gnome, u"<Alt>F4"_s, {u"Close"_s});
        add("GNOME's shell", GSettingsFamily::gnome, u"<Super>s"_s, {u"Toggle overview"_s});
        add("GNOME's media", GSettingsFamily::gnome, u"<Super>l"_s, {u"Screensaver"_s});
        add("Cinnamon's windows", GSettingsFamily::cinnamon, u"<Alt>F4"_s, {u"Close"_s});
        add("Cinnamon's media", GSettingsFamily::cinnamon, u"<Super>e"_s, {u"Home"_s});
        add("MATE's desktop", GSettingsFamily::mate, u"<Control><Alt>d"_s, {u"Show desktop"_s});
        add("MATE's windows", GSettingsFamily::mate, u"<Alt>space"_s, {u"Activate window menu"_s});
    }
    void namesADesktopsOwnActionsAfterTheirSettings()
    {
        QFETCH(const GSettingsFamily *const, family);
        QFETCH(const QString, text);
        GSettingsKeys desktopKeys(*family);
        desktopKeys.start();
        QTRY_VERIFY(desktopKeys.keys());
        QTEST(actions(desktopKeys, text), "names");
    }

    void namesTheUsersOwn_data()
    {
        QTest::addColumn<const GSettingsFamily *>("family");
        QTest::addColumn<QString>("custom");
        QTest::addColumn<QString>("commandKey");
        QTest::addColumn<QString>("binding");
        QTest::addColumn<QStringList>("list");
        const auto add = [](const char *row, const GSettingsFamily &family, const char *schema,
                            const QString &path, const QString &commandKey, const QString &binding,
                            const QStringList &list) {
            QTest::newRow(row) << &family << QLatin1StringView(schema) + u':' + path << commandKey
                               << binding << list;
        };
        add("GNOME", GSettingsFamily::gnome, gnomeCustom, u"/named/"_s, u"command"_s,
            u"<Super>F11"_s,
            {u"org.gnome.settings-daemon.plugins.media-keys"_s, u"custom-keybindings"_s,
             u"['/named/']"_s});
        add("Cinnamon", GSettingsFamily::cinnamon, cinnamonCustom,
            u"/org/cinnamon/desktop/keybindings/custom-keybindings/named/"_s, u"command"_s,
            u"['<Super>F11']"_s,
            {u"org.cinnamon.desktop.keybindings"_s, u"custom-list"_s, u"['named']"_s});
        add("MATE", GSettingsFamily::mate, mateCustom, u"/org/mate/desktop/keybindings/custom9/"_s,
            u"action"_s, u"<Super>F11"_s,
            {u"org.mate.Marco.global-keybindings"_s, u"run-command-12"_s, u"disabled"_s});
    }
    void namesTheUsersOwn()
    {
        QFETCH(const GSettingsFamily *const, family);
        QFETCH(const QString, custom);
        QFETCH(const QString, commandKey);
        QFETCH(const QString, binding);
        QFETCH(const QStringList, list);
        const auto keys = u"<Super>F11"_s;
        QVERIFY(setCustomText(custom, u"binding"_s, binding));
        QCOMPARE(QProcess::execute(u"gsettings"_s, QStringList{u"set"_s} + list), 0);
        GSettingsKeys desktopKeys(*family);
        desktopKeys.start();
        QTRY_COMPARE(actions(desktopKeys, keys), QStringList{u"none"_s});
        QVERIFY(setCustomText(custom, commandKey, u"'xterm -e \"my program\"'"_s));
        QTRY_COMPARE(actions(desktopKeys, keys), QStringList{u"xterm -e \"my program\""_s});
        QVERIFY(setCustomText(custom, u"name"_s, u"'My <b>“Terminal”</b>'"_s));
        QTRY_COMPARE(actions(desktopKeys, keys), QStringList{u"My <b>“Terminal”</b>"_s});
        QVERIFY(setCustomText(custom, u"name"_s, u"'one\\ntwo\\u0007'"_s));
        QTRY_COMPARE(actions(desktopKeys, keys), QStringList{u"one two"_s});
        QVERIFY(setCustomText(custom, u"name"_s, u'\'' + QString(10'000, u'x') + u'\''));
        QTRY_COMPARE(actions(desktopKeys, keys).value(0).size(), 200);
        QVERIFY(setCustomText(custom, u"name"_s, u"' \\n'"_s));
        QTRY_COMPARE(actions(desktopKeys, keys), QStringList{u"xterm -e \"my program\""_s});
    }

    void namesTheDesktopsOwnActionBeforeTheUsers()
    {
        QVERIFY(setCustom(gnomeCustom, u"/twice/"_s, u"<Super>F12"_s));
        QVERIFY(
            setCustomText(QLatin1StringView(gnomeCustom) + u":/twice/"_s, u"name"_s, u"Mine"_s));
        QVERIFY(gsettings(u"set org.gnome.settings-daemon.plugins.media-keys custom-keybindings "
                          "\"['/twice/']\""_s));
        QVERIFY(gsettings(u"set org.gnome.desktop.wm.keybindings raise \"['<Super>F12']\""_s));
        GSettingsKeys desktopKeys(GSettingsFamily::gnome);
        desktopKeys.start();
        QTRY_COMPARE(actions(desktopKeys, u"<Super>F12"_s), (QStringList{u"Raise"_s, u"Mine"_s}));
    }

    void hearsOfEveryChange_data()
    {
        QTest::addColumn<const GSettingsFamily *>("family");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        const auto add = [](const char *row, const GSettingsFamily &family, const QString &key,
                            const QString &value) {
            QTest::newRow(row) << &family << key << value;
        };
        add("GNOME's windows", GSettingsFamily::gnome, u"org.gnome.desktop.wm.keybindings lower"_s,
            u"['<Super>F9']"_s);
        add("GNOME's shell", GSettingsFamily::gnome,
            u"org.gnome.shell.keybindings open-application-menu"_s, u"['<Super>F9']"_s);
        add("GNOME's screens", GSettingsFamily::gnome,
            u"org.gnome.mutter.keybindings rotate-monitor"_s, u"['<Super>F9']"_s);
        add("GNOME's sessions", GSettingsFamily::gnome,
            u"org.gnome.mutter.wayland.keybindings switch-to-session-1"_s, u"['<Super>F9']"_s);
        add("GNOME's overview", GSettingsFamily::gnome, u"org.gnome.mutter overlay-key"_s,
            u"'<Super>F9'"_s);
        add("GNOME's media", GSettingsFamily::gnome,
            u"org.gnome.settings-daemon.plugins.media-keys home"_s, u"['<Super>F9']"_s);
        add("what GNOME hides", GSettingsFamily::gnome,
            u"org.gnome.settings-daemon.plugins.media-keys play-static"_s, u"['<Super>F9']"_s);
        add("Cinnamon's shell", GSettingsFamily::cinnamon,
            u"org.cinnamon.desktop.keybindings show-desklets"_s, u"['<Super>F9']"_s);
        add("Cinnamon's windows", GSettingsFamily::cinnamon,
            u"org.cinnamon.desktop.keybindings.wm lower"_s, u"['<Super>F9']"_s);
        add("Cinnamon's media", GSettingsFamily::cinnamon,
            u"org.cinnamon.desktop.keybindings.media-keys home"_s, u"['<Super>F9']"_s);
        add("MATE's desktop", GSettingsFamily::mate,
            u"org.mate.Marco.global-keybindings run-command-1"_s, u"'<Super>F9'"_s);
        add("MATE's windows", GSettingsFamily::mate, u"org.mate.Marco.window-keybindings lower"_s,
            u"'<Super>F9'"_s);
        add("MATE's media", GSettingsFamily::mate,
            u"org.mate.SettingsDaemon.plugins.media-keys home"_s, u"'<Super>F9'"_s);
    }
    void hearsOfEveryChange()
    {
        QFETCH(const GSettingsFamily *const, family);
        QFETCH(const QString, key);
        QFETCH(const QString, value);
        GSettingsKeys desktopKeys(*family);
        desktopKeys.start();
        QTRY_VERIFY(desktopKeys.keys());
        QVERIFY(!has(desktopKeys, u"<Super>F9"_s));
        QVERIFY(gsettings(u"set %1 \"%2\""_s.arg(key, value)));
        QTRY_VERIFY(has(desktopKeys, u"<Super>F9"_s));
        QVERIFY(gsettings(u"reset "_s + key));
        QTRY_VERIFY(!has(desktopKeys, u"<Super>F9"_s));
    }

    void leavesOutWhatIsSwitchedOff_data()
    {
        QTest::addColumn<const GSettingsFamily *>("family");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("text");
        const auto add = [](const char *row, const GSettingsFamily &family, const QString &key,
                            const QString &value, const QString &text) {
            QTest::newRow(row) << &family << key << value << text;
        };
        add("no combination", GSettingsFamily::gnome, u"org.gnome.desktop.wm.keybindings close"_s,
            u"[]"_s, u"<Alt>F4"_s);
        add("an empty combination", GSettingsFamily::gnome,
            u"org.gnome.desktop.wm.keybindings begin-move"_s, u"['']"_s, u"<Alt>F7"_s);
        add("a disabled combination in a list", GSettingsFamily::cinnamon,
            u"org.cinnamon.desktop.keybindings.wm begin-move"_s, u"['disabled']"_s, u"<Alt>F7"_s);
        add("a disabled combination", GSettingsFamily::mate,
            u"org.mate.Marco.window-keybindings begin-move"_s, u"'disabled'"_s, u"<Alt>F7"_s);
        add("an empty text", GSettingsFamily::mate,
            u"org.mate.Marco.window-keybindings begin-resize"_s, u"''"_s, u"<Alt>F8"_s);
    }
    void leavesOutWhatIsSwitchedOff()
    {
        QFETCH(const GSettingsFamily *const, family);
        QFETCH(const QString, key);
        QFETCH(const QString, value);
        QFETCH(const QString, text);
        GSettingsKeys desktopKeys(*family);
        desktopKeys.start();
        QTRY_VERIFY(has(desktopKeys, text));
        QVERIFY(gsettings(u"set %1 \"%2\""_s.arg(key, value)));
        QTRY_VERIFY(!has(desktopKeys, text));
    }

    void readsEveryCombinationOfAKey()
    {
        GSettingsKeys desktopKeys(GSettingsFamily::gnome);
        desktopKeys.start();
        QVERIFY(gsettings(u"set org.gnome.desktop.wm.keybindings raise "
                          "\"['<Super>F9', 'junk', '<Super>F10', '<Super>0x2e']\""_s));
        QTRY_VERIFY(has(desktopKeys, u"<Super>F9"_s));
        QVERIFY(has(desktopKeys, u"<Super>F10"_s));
        QVERIFY(has(desktopKeys, u"<Super>0x2e"_s));
    }

    void followsTheUsersOwnOnGnome()
    {
        const auto list = u"set org.gnome.settings-daemon.plugins.media-keys custom-keybindings "
                          "\"%1\""_s;
        GSettingsKeys desktopKeys(GSettingsFamily::gnome);
        desktopKeys.start();
        QTRY_VERIFY(desktopKeys.keys());
        QVERIFY(setCustom(gnomeCustom, u"/one/"_s, u"<Super>F3"_s));
        QVERIFY(gsettings(list.arg(u"['/one/', '', 'none', '/', '//', '/one//', '/two/']"_s)));
        QTRY_VERIFY(has(desktopKeys, u"<Super>F3"_s));
        QVERIFY(setCustom(gnomeCustom, u"/two/"_s, u"<Super>F4"_s));
        QTRY_VERIFY(has(desktopKeys, u"<Super>F4"_s));
        QVERIFY(setCustom(gnomeCustom, u"/one/"_s, u"<Super>F5"_s));
        QTRY_VERIFY(has(desktopKeys, u"<Super>F5"_s));
        QVERIFY(!has(desktopKeys, u"<Super>F3"_s));
        QVERIFY(gsettings(list.arg(u"['/two/']"_s)));
        QTRY_VERIFY(!has(desktopKeys, u"<Super>F5"_s));
        QVERIFY(has(desktopKeys, u"<Super>F4"_s));
    }

    void followsTheUsersOwnOnCinnamon()
    {
        const auto list = u"set org.cinnamon.desktop.keybindings custom-list \"%1\""_s;
        const auto path = u"/org/cinnamon/desktop/keybindings/custom-keybindings/custom0/"_s;
        GSettingsKeys desktopKeys(GSettingsFamily::cinnamon);
        desktopKeys.start();
        QTRY_VERIFY(desktopKeys.keys());
        QVERIFY(setCustom(cinnamonCustom, path, u"['<Super>F3', '<Super>F4']"_s));
        QVERIFY(gsettings(list.arg(u"['__dummy__', 'custom0', '']"_s)));
        QTRY_VERIFY(has(desktopKeys, u"<Super>F3"_s));
        QVERIFY(has(desktopKeys, u"<Super>F4"_s));
        QVERIFY(setCustom(cinnamonCustom, path, u"['<Super>F5']"_s));
        QTRY_VERIFY(has(desktopKeys, u"<Super>F5"_s));
        QVERIFY(!has(desktopKeys, u"<Super>F3"_s));
        QVERIFY(gsettings(list.arg(u"['__dummy__']"_s)));
        QTRY_VERIFY(!has(desktopKeys, u"<Super>F5"_s));
    }

    void followsTheUsersOwnOnMate()
    {
        const auto path = u"/org/mate/desktop/keybindings/custom%1/"_s;
        GSettingsKeys desktopKeys(GSettingsFamily::mate);
        desktopKeys.start();
        QTRY_VERIFY(desktopKeys.keys());
        QVERIFY(setCustom(mateCustom, path.arg(0), u"<Super>F3"_s));
        QTRY_VERIFY(has(desktopKeys, u"<Super>F3"_s));
        QVERIFY(setCustom(mateCustom, path.arg(15), u"<Super>F4"_s));
        QTRY_VERIFY(has(desktopKeys, u"<Super>F4"_s));
        QVERIFY(setCustom(mateCustom, path.arg(31), u"<Super>F5"_s));
        QTRY_VERIFY(has(desktopKeys, u"<Super>F5"_s));
        QVERIFY(resetCustom(mateCustom, path.arg(0)));
        QTRY_VERIFY(!has(desktopKeys, u"<Super>F3"_s));
        QVERIFY(has(desktopKeys, u"<Super>F4"_s));
        QVERIFY(setCustom(mateCustom, path.arg(31), u"disabled"_s));
        QTRY_VERIFY(!has(desktopKeys, u"<Super>F5"_s));
    }

    void leavesOutTheUsersOwnThatCallsUs_data()
    {
        QTest::addColumn<const GSettingsFamily *>("family");
        QTest::addColumn<QString>("custom");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("binding");
        QTest::addColumn<QString>("list");
        const auto add = [](const char *row, const GSettingsFamily &family, const char *schema,
                            const QString &path, const QString &command, const QString &binding,
                            const QString &list) {
            const QString custom = QLatin1StringView(schema) + u':' + path + u' ';
            QTest::newRow(row) << &family << custom << command << binding << list;
        };
        add("GNOME", GSettingsFamily::gnome, gnomeCustom, u"/own/"_s, u"command"_s, u"<Super>F3"_s,
            u"org.gnome.settings-daemon.plugins.media-keys custom-keybindings \"['/own/']\""_s);
        add("Cinnamon", GSettingsFamily::cinnamon, cinnamonCustom,
            u"/org/cinnamon/desktop/keybindings/custom-keybindings/own/"_s, u"command"_s,
            u"['<Super>F3']"_s, u"org.cinnamon.desktop.keybindings custom-list \"['own']\""_s);
        const auto first = u"/org/mate/desktop/keybindings/custom0/"_s;
        add("MATE, which has no list", GSettingsFamily::mate, mateCustom, first, u"action"_s,
            u"<Super>F3"_s, QLatin1StringView(mateCustom) + u':' + first + u" name x"_s);
    }
    void leavesOutTheUsersOwnThatCallsUs()
    {
        QFETCH(const GSettingsFamily *const, family);
        QFETCH(const QString, custom);
        QFETCH(const QString, command);
        QFETCH(const QString, binding);
        QFETCH(const QString, list);
        QVERIFY(gsettings(u"set "_s + custom + command + u" xterm"_s));
        QVERIFY(gsettings(u"set "_s + custom + u"binding \""_s + binding + u'"'));
        QVERIFY(gsettings(u"set "_s + list));
        GSettingsKeys desktopKeys(*family);
        desktopKeys.start();
        QTRY_VERIFY(has(desktopKeys, u"<Super>F3"_s));
        QVERIFY(gsettings(u"set "_s + custom + command
                          + u" \"gapplication action org.corvane.Corvane fire x\""_s));
        QTRY_VERIFY(!has(desktopKeys, u"<Super>F3"_s));
    }

    void knowsWhetherGnomeKeepsTheSuperKey()
    {
        const auto reset = qScopeGuard([] { gsettings(u"reset org.gnome.mutter overlay-key"_s); });
        GSettingsKeys desktopKeys(GSettingsFamily::gnome);
        desktopKeys.start();
        QTRY_VERIFY(desktopKeys.keys());
        QVERIFY(desktopKeys.keepsSuperKey());
        QVERIFY(gsettings(u"set org.gnome.mutter overlay-key ''"_s));
        QTRY_VERIFY(!desktopKeys.keepsSuperKey());
        QVERIFY(gsettings(u"set org.gnome.mutter overlay-key 'Super_R'"_s));
        QTRY_VERIFY(desktopKeys.keepsSuperKey());
        QVERIFY(gsettings(u"set org.gnome.mutter overlay-key '<Super>F9'"_s));
        QTRY_VERIFY(!desktopKeys.keepsSuperKey());
    }

    void knowsWhetherCinnamonsMenuKeepsTheSuperKey()
    {
        QDir folder(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                    + u"/cinnamon/spices/menu@cinnamon.org"_s);
        QVERIFY(folder.mkpath(u"."_s));
        const auto remove = qScopeGuard([&folder] { folder.removeRecursively(); });
        const auto write = [&folder](const QByteArray &content) {
            QFile file(folder.filePath(u"0.json"_s));
            QVERIFY(file.open(QFile::WriteOnly) && file.write(content) == content.size());
        };
        GSettingsKeys desktopKeys(GSettingsFamily::cinnamon);
        desktopKeys.start();
        QTRY_VERIFY(desktopKeys.keys());
        QVERIFY(!desktopKeys.keepsSuperKey());
        write(R"({"overlay-key": {"type": "keybinding", "value": "Super_L::Super_R"}})");
        QTRY_VERIFY(desktopKeys.keepsSuperKey());
        for (const QByteArray content :
             {R"({"overlay-key": {"type": "keybinding", "value": "<Super>F9::"}})", "{", "[]",
              R"({"overlay-key": 1})", R"({"overlay-key": {"value": 1}})"}) {
            write(content);
            QTRY_VERIFY(!desktopKeys.keepsSuperKey());
            write(R"({"overlay-key": {"value": "::Super_R"}})");
            QTRY_VERIFY(desktopKeys.keepsSuperKey());
        }
        QVERIFY(folder.remove(u"0.json"_s));
        QTRY_VERIFY(!desktopKeys.keepsSuperKey());
    }

    void readsNothingWhereADesktopIsNotInstalled()
    {
        GSettingsKeys missing({
            .keys{{"org.example.keybindings"}, {"org.example", "overlay-key"}},
            .customSchema = "org.example.custom-keybinding",
            .customPath = u"/org/example/%1/"_s,
        });
        missing.start();
        GSettingsKeys installed(GSettingsFamily::gnome);
        installed.start();
        QTRY_VERIFY(installed.keys());
        QVERIFY(!missing.keys());
    }

    void copesWithSchemasOfOtherVersions()
    {
        GSettingsKeys desktopKeys({
            .keys{
                {"org.gnome.mutter", "no-such-key"},
                {"org.gnome.settings-daemon.plugins.media-keys.custom-keybinding"},
                {"org.gnome.mutter", "overlay-key"},
            },
            .customSchema = "org.gnome.mutter",
            .customPath = u"/org/example/%1/"_s,
        });
        desktopKeys.start();
        QTRY_COMPARE(desktopKeys.keys(),
                     (QList<DesktopKey>{{*gtkAccelerator(u"Super_L"_s), u"Overlay key"_s}}));
    }

    void readsSettingsThatHungAtFirst()
    {
        const QTemporaryDir folder;
        if (!isOwnProcess()) {
            const auto profile = folder.filePath(u"profile"_s);
            QCOMPARE(mkfifo(qPrintable(profile), 0600), 0);
            auto environment = QProcessEnvironment::systemEnvironment();
            environment.insert(u"DCONF_PROFILE"_s, profile);
            QVERIFY(succeedsIn(environment));
            return;
        }
        GSettingsKeys desktopKeys(GSettingsFamily::gnome);
        desktopKeys.start();
        QFile profile(qEnvironmentVariable("DCONF_PROFILE"));
        QVERIFY(profile.open(QFile::WriteOnly | QFile::Unbuffered));
        profile.write("user-db:user\n");
        profile.close();
        QTRY_VERIFY(has(desktopKeys, u"<Super>p"_s));
    }

    void needsNoBusToReadAndToEnd_data()
    {
        QTest::addColumn<bool>("busHangs");
        QTest::newRow("no bus") << false;
        QTest::newRow("a bus that hangs") << true;
    }
    void needsNoBusToReadAndToEnd()
    {
        QFETCH(const bool, busHangs);
        if (!isOwnProcess()) {
            QProcess bus;
            bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
            QVERIFY(bus.waitForReadyRead());
            const auto address = QString::fromUtf8(bus.readLine().trimmed());
            ::kill(pid_t(bus.processId()), busHangs ? SIGSTOP : SIGKILL);
            auto environment = QProcessEnvironment::systemEnvironment();
            environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, address);
            QVERIFY(succeedsIn(environment));
            bus.kill();
            bus.waitForFinished();
            return;
        }
        GSettingsKeys desktopKeys(GSettingsFamily::gnome);
        desktopKeys.start();
        QTRY_VERIFY(has(desktopKeys, u"<Super>p"_s));
    }

    void sleepsWhileNothingChanges()
    {
        GSettingsKeys desktopKeys(GSettingsFamily::gnome);
        desktopKeys.start();
        QTRY_VERIFY(desktopKeys.keys());
        QVERIFY(QTest::qWaitFor(isAtRest));
    }

    void endsWhateverItIsDoing()
    {
        for (unsigned long microseconds = 0; microseconds < 10'000; microseconds += 100) {
            auto desktopKeys = std::make_unique<GSettingsKeys>(GSettingsFamily::gnome);
            desktopKeys->start();
            QThread::usleep(microseconds);
            QElapsedTimer end;
            end.start();
            desktopKeys.reset();
            QVERIFY(end.elapsed() < 1000);
        }
    }
};

QTEST_GUILESS_MAIN(GSettingsKeysTest)
#include "GSettingsKeysTest.moc"
