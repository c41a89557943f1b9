#include "platform/linux/launch/WindowsOfApp.h"

#include <QTest>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
// The names of installed applications, as their .desktop files have them.
const AppNames writer{u"libreoffice-writer"_s, u"libreoffice-writer"_s, u"libreoffice"_s};
const AppNames chromium{u"Chromium"_s, u"chromium"_s, u"chromium"_s};
const AppNames webApp{u"crx_abc"_s, u"chrome-abc-Default"_s, u"chromium"_s};
const AppNames maps{{}, u"org.gnome.Maps"_s, u"gnome-maps"_s};
const AppNames firefox{u"firefox"_s, u"firefox-esr"_s, u"firefox-esr"_s};
const AppNames xterm{{}, u"debian-xterm"_s, u"xterm"_s};

bool isClassOfApp(const QString &windowClass)
{
    const QStringList classes{u"libreoffice-writer"_s, u"libreoffice-calc"_s, u"chromium"_s,
                              u"crx_abc"_s, u"firefox"_s};
    return classes.contains(windowClass, Qt::CaseInsensitive);
}
} // namespace

class WindowsOfAppTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsItsOwn_data()
    {
        QTest::addColumn<AppNames>("app");
        QTest::addColumn<OpenWindow>("window");
        QTest::addColumn<bool>("isItsOwn");
        const auto add = [](const char *row, const AppNames &app, const OpenWindow &window,
                            bool isItsOwn) { QTest::newRow(row) << app << window << isItsOwn; };
        const OpenWindow calcWindow{u"libreoffice"_s, u"libreoffice-calc"_s, {}, 0};
        const OpenWindow writerWindow{u"libreoffice"_s, u"libreoffice-writer"_s, {}, 0};
        const OpenWindow browserWindow{u"chromium"_s, u"Chromium"_s, {}, 0};
        const OpenWindow webAppWindow{u"crx_abc"_s, u"Chromium"_s, {}, 0};
        add("the class", writer, writerWindow, true);
        add("another class of the same program", writer, calcWindow, false);
        add("the browser", chromium, browserWindow, true);
        add("a web app instead of the browser", chromium, webAppWindow, false);
        add("a web app", webApp, webAppWindow, true);
        add("the browser instead of a web app", webApp, browserWindow, false);
        add("an instance that is no app", firefox, {u"Navigator"_s, u"firefox"_s, {}, 0}, true);
        add("the id of a GTK application", maps, {u"x"_s, u"X"_s, u"org.gnome.Maps"_s, 0}, true);
        add("the id as a class", maps, {u"org.gnome.Maps"_s, u"Org.gnome.Maps"_s, {}, 0}, true);
        add("the last part of the id", maps, {u"maps"_s, u"Maps"_s, {}, 0}, true);
        add("another part of the id", maps, {u"gnome"_s, u"Gnome"_s, {}, 0}, false);
        add("the program", xterm, {u"xterm"_s, u"XTerm"_s, {}, 0}, true);
        add("a program that another app's class names", {{}, u"mine"_s, u"firefox"_s},
            {u"Navigator"_s, u"firefox"_s, {}, 0}, false);
        add("nothing known of the window", xterm, {}, false);
        add("nothing known of the app", {}, {}, false);
    }
    void knowsItsOwn()
    {
        QFETCH(const AppNames, app);
        QFETCH(const OpenWindow, window);
        QTEST(isWindowOf(app, window, isClassOfApp), "isItsOwn");
    }

    void knowsTheProgramOfAWindow()
    {
        const OpenWindow own{.process = getpid()};
        QVERIFY(isWindowOfProgram(QCoreApplication::applicationFilePath(), own));
        QVERIFY(!isWindowOfProgram(u"/bin/true"_s, own));
        QVERIFY(!isWindowOfProgram(QCoreApplication::applicationFilePath(), {}));
        // Nothing is known of a process that has ended.
        QVERIFY(!isWindowOfProgram(u"/does/not/exist"_s, {.process = 1 << 30}));
    }
};

QTEST_GUILESS_MAIN(WindowsOfAppTest)
#include "WindowsOfAppTest.moc"
