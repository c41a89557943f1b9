// The token of a press on a running KWin, with which a started program comes to the front.

#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/WaylandKeyboard.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRasterWindow>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr StoredKeys storedControlAltK{40, 0x1800};
const QList<int> controlAltK{KEY_LEFTCTRL, KEY_LEFTALT, KEY_K};

/// Installs a desktop file with which a program gets an interface of KWin's.
void install(const QString &name, const QString &program, const QByteArray &interface)
{
    const QDir folder(qEnvironmentVariable("XDG_DATA_HOME") + u"/applications"_s);
    QVERIFY(folder.mkpath(u"."_s));
    QFile file(folder.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Desktop Entry]\nType=Application\nName=Program\nExec=" + QFile::encodeName(program)
               + "\nX-KDE-Wayland-Interfaces=" + interface + '\n');
}

class Window : public QRasterWindow
{
public:
    explicit Window(const QString &title)
    {
        setTitle(title);
        resize(300, 200);
        show();
        QTRY_VERIFY(isActive());
    }
};

/// Starts the program with the app, and presses its keys until it has started.
QJsonObject startOfApp(const RecordedApp &app)
{
    ProgramUnderTest program;
    program.addApp(app.desktopFile(), storedControlAltK);
    program.start();
    WaylandKeyboard keyboard;
    const auto hasStarted = [&] {
        keyboard.type(controlAltK);
        return QTest::qWaitFor([&] { return !app.starts().isEmpty(); }, 300);
    };
    const bool starts = QTest::qWaitFor(hasStarted);
    program.stop();
    return starts ? app.starts().constFirst() : QJsonObject();
}
} // namespace

class PlasmaTokenTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        install(u"keyboard.desktop"_s, QCoreApplication::applicationFilePath(),
                "org_kde_kwin_fake_input");
    }

    void isNoneForAProgramThatIsNotInstalled()
    {
        const RecordedApp app;
        QCOMPARE(startOfApp(app).value(u"activationToken"_s), QJsonValue(u""_s));
    }

    void bringsAWindowToTheFront()
    {
        install(u"org.corvane.Corvane.desktop"_s, ProgramUnderTest().program,
                "org_kde_plasma_window_management");
        Window behind(u"Behind"_s);
        const Window front(u"Front"_s);
        const RecordedApp app;
        const QJsonObject start = startOfApp(app);
        // Qt's Wayland plugin reads the token from this variable.
        qputenv("XDG_ACTIVATION_TOKEN", start.value(u"activationToken"_s).toString().toUtf8());
        QVERIFY(front.isActive() && !behind.isActive());
        behind.requestActivate();
        QTRY_VERIFY(behind.isActive());
    }
};

QTEST_MAIN(PlasmaTokenTest)
#include "PlasmaTokenTest.moc"
