#include "support/Rhythm.h"

#include <QProcess>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
bool isKeyboardChanged = false;

void runTool(const QString &command)
{
    QCOMPARE(QProcess::execute(u"sh"_s, {u"-c"_s, command}), 0);
}

QString rateCommand(RepeatRate rate)
{
    return u"xset r rate %1 %2"_s.arg(rate.delay).arg(rate.repeats);
}
} // namespace

void changeKeyboard(const QString &command)
{
    isKeyboardChanged = true;
    runTool(command);
}

void restoreKeyboard()
{
    Keyboard keyboard;
    keyboard.setLocks(0);
    keyboard.setGroup(0);
    if (std::exchange(isKeyboardChanged, false))
        runTool(u"setxkbmap us && "_s + rateCommand(usualRate));
}

void RepeatRate::set() const
{
    changeKeyboard(rateCommand(*this));
}

QByteArray RepeatRate::inWords() const
{
    return " with " + QByteArray::number(repeats) + " repeats a second after "
        + QByteArray::number(delay) + " ms";
}

AddRow addRhythms()
{
    QTest::addColumn<Rhythm>("rhythm");
    return [](const QByteArray &row, const Rhythm &rhythm) {
        QTest::newRow(row.constData()) << rhythm;
    };
}

void verifyRuns(const Rhythm &rhythm)
{
    Typing typing(rhythm.argumentsOfK);
    QVERIFY(QTest::qWaitForWindowActive(&typing.window));
    rhythm.before(typing);
    typing.keyboard.setLocks(rhythm.locks);
    typing.program.start();
    const quint16 modifiers = controlAlt | rhythm.locks;
    QVERIFY(QTest::qWaitFor([&] { return typing.keyboard.isGrabbed(KEY_K, modifiers); }));

    rhythm.keys(typing);
    if (QTest::currentTestFailed())
        return;
    // When L's application runs, all presses before it have been dealt with. A busy machine takes
    // seconds to start 500 applications.
    QTRY_VERIFY(typing.keyboard.isGrabbed(KEY_L, modifiers));
    typing.keyboard.type(controlAltL);
    QTRY_COMPARE_WITH_TIMEOUT(typing.onL.starts().size(), 1, 30'000);
    QCOMPARE(typing.program.stop(), 0);
    QCOMPARE(typing.onK.starts().size(), rhythm.runsOfK);
    QCOMPARE(typing.onJ.starts().size(), rhythm.runsOfJ);

    // When F9 has come to the window, so has everything before it.
    typing.keyboard.type({KEY_F9});
    QTRY_COMPARE(typing.window.presses[Qt::Key_F9], 1);
    QVERIFY(rhythm.reachesTheWindow || typing.window.presses[Qt::Key_K] == 0);
}
