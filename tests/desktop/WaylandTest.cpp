// In a Wayland session, with its X server within reach.

#include "support/Keyboard.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr quint16 controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
}

class WaylandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsAndSaysThatThereAreNoKeysYet()
    {
        RecordedApp app;
        ProgramUnderTest program;
        program.addApp(app.desktopFile(), {40, 0x1800});
        program.start();
        QTRY_COMPARE(program.errorOutput(),
                     QByteArray("corvane: key combinations do not work in Wayland sessions yet\n"));

        const Keyboard keyboard;
        QVERIFY(!keyboard.isGrabbed(KEY_K, controlAlt));
        // Asked to end, it does so from its event loop.
        QCOMPARE(program.stop(), 0);
        QVERIFY(!keyboard.isGrabbed(KEY_K, controlAlt));
        QVERIFY(app.starts().isEmpty());
    }
};

QTEST_GUILESS_MAIN(WaylandTest)
#include "WaylandTest.moc"
