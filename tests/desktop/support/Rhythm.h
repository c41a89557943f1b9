// Keys that are pressed in some rhythm, and what comes of it.
#pragma once

#include "support/SettingsDesk.h"

#include <QFile>
#include <QHash>
#include <QKeyEvent>
#include <QRasterWindow>
#include <QTest>
#include <functional>

inline const QList<int> controlAltL{KEY_LEFTCTRL, KEY_LEFTALT, KEY_L};
inline constexpr StoredKeys storedControlAltL{37, 0x1800};

/// Makes the server's keyboard another one, by a command, until restoreKeyboard().
void changeKeyboard(const QString &command);

/// To be called after each test: no locks, the first group, and the usual keyboard.
void restoreKeyboard();

/// The delay before the first repeat of a held key, in ms, and the repeats in a second.
struct RepeatRate {
    int delay;
    int repeats;

    /// Until the end of the test.
    void set() const;
    QByteArray inWords() const;
    /// Long enough for several repeats.
    constexpr int longHold() const { return delay + 300; }
};

/// What holds unless a test sets another, and what restoreKeyboard() comes back to. Quicker than
/// that of the server, so that the tests need not hold their keys for seconds.
inline constexpr RepeatRate usualRate{250, 33};
inline constexpr int longHold = usualRate.longHold();

/// Leaves an application time to start before the first repeat, even on a busy machine.
inline constexpr RepeatRate lateRepeats{1000, 33};

/// A window of another program, which has the focus and counts the keys that reach it.
class FocusedWindow : public QRasterWindow
{
public:
    FocusedWindow()
    {
        resize(300, 200);
        show();
        requestActivate();
    }

    /// How often a key of Qt::Key was pressed; repeats of a held key count as well.
    QHash<int, int> presses;

protected:
    void keyPressEvent(QKeyEvent *event) override { ++presses[event->key()]; }
};

/// The program with an application on each of Control+Option+K, J and L, and a window of another
/// program that has the focus.
struct Typing {
    explicit Typing(const QByteArray &argumentsOfK)
        : onK(argumentsOfK)
    {
        program.addApp(onK.desktopFile(), storedControlAltK);
        program.addApp(onJ.desktopFile(), storedControlAltJ);
        program.addApp(onL.desktopFile(), storedControlAltL);
    }

    Keyboard keyboard;
    FocusedWindow window;
    RecordedApp onK;
    RecordedApp onJ;
    RecordedApp onL;
    ProgramUnderTest program;

    /// Lets that many ms of the rhythm pass.
    void wait(int duration) { QTest::qWait(duration); }

    void hold(const QList<int> &keys, int duration)
    {
        keyboard.press(keys);
        wait(duration);
        keyboard.release(keys);
    }

    /// Presses the combinations one after the other, again and again, 10 ms apart.
    void alternate(const QList<QList<int>> &combinations, int times)
    {
        for (int i = 0; i < times; ++i) {
            for (const QList<int> &keys : combinations) {
                hold(keys, 5);
                wait(5);
            }
        }
    }

    /// Has J run once. A key that is down before the program has taken its keys does not count.
    void awaitStart()
    {
        keyboard.type(controlAltJ);
        QTRY_COMPARE(onJ.starts().size(), 1);
    }

    /// What K's application keeps the keyboard for, if it was told to.
    QFile reasonToGrab{program.home.filePath(QStringLiteral("reason"))};

    void awaitGrabByApplication()
    {
        QTRY_COMPARE(onK.starts().size(), 1);
        QCOMPARE(onK.starts().constFirst()[u"keyboardGrab"].toInt(-1), 0);
    }

    void endGrabByApplication()
    {
        keyboard.sync();
        QVERIFY(reasonToGrab.remove());
        QTRY_COMPARE(program.children(), QList<pid_t>());
    }

    /// Presses K once and awaits the end of its application, which may take the keyboard.
    void typeToTheEnd()
    {
        const auto runs = onK.starts().size();
        keyboard.type(controlAltK);
        QTRY_COMPARE(onK.starts().size(), runs + 1);
        QTRY_COMPARE(program.children(), QList<pid_t>());
    }
};

/// What is done to the keys, and what comes of it.
struct Rhythm {
    /// Begins as soon as K is grabbed. All keys are up in the end.
    std::function<void(Typing &)> keys;
    int runsOfK = 0;
    int runsOfJ = 0;
    /// Before the program starts.
    std::function<void(Typing &)> before = [](Typing &) {};
    QByteArray argumentsOfK = {};
    quint16 locks = 0;
    /// What is pressed before the start or without the modifiers is not ours.
    bool reachesTheWindow = false;
};
Q_DECLARE_METATYPE(Rhythm)

using AddRow = std::function<void(const QByteArray &, const Rhythm &)>;

/// Adds the only column of a test of rhythms; what adds its rows.
AddRow addRhythms();

/// Claims that the rhythm runs the applications so often, and not more often.
void verifyRuns(const Rhythm &rhythm);
