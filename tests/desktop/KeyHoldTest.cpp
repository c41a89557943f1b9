// Real keys on a real X server that are held, or pressed faster than they repeat.

#include "support/Rhythm.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// That of the server, that of a desktop, and the quickest that can be set in one.
constexpr RepeatRate repeatRates[] = {{660, 25}, {250, 33}, {200, 100}};

void addHoldsThatBeganUnseen(const AddRow &add)
{
    const auto holdModifiers = [](Typing &typing, int duration) {
        typing.keyboard.press({KEY_LEFTCTRL, KEY_LEFTALT});
        typing.wait(duration);
        typing.keyboard.release(controlAltK);
    };
    for (const RepeatRate rate : repeatRates) {
        for (const int lead : {30, rate.longHold()}) {
            add("the key goes down " + QByteArray::number(lead) + " ms before the modifiers"
                    + rate.inWords(),
                {.keys =
                     [=](Typing &typing) {
                         typing.awaitStart();
                         typing.keyboard.press({KEY_K});
                         typing.wait(lead);
                         holdModifiers(typing, rate.longHold());
                     },
                 .runsOfK = 1,
                 .runsOfJ = 1,
                 .before = [rate](Typing &) { rate.set(); },
                 .reachesTheWindow = true});
        }
        add("the second modifier goes down after the key" + rate.inWords(),
            {.keys =
                 [rate](Typing &typing) {
                     typing.awaitStart();
                     typing.keyboard.press({KEY_LEFTCTRL, KEY_K});
                     typing.wait(rate.longHold());
                     typing.keyboard.press({KEY_LEFTALT});
                     typing.wait(rate.longHold());
                     typing.keyboard.release(controlAltK);
                 },
             .runsOfK = 1,
             .runsOfJ = 1,
             .before = [rate](Typing &) { rate.set(); },
             .reachesTheWindow = true});
        add("held while another program has the keyboard and gives it back" + rate.inWords(),
            {.keys =
                 [rate](Typing &typing) {
                     typing.awaitStart();
                     Keyboard locker;
                     QVERIFY(locker.grabAll());
                     typing.keyboard.press(controlAltK);
                     typing.wait(rate.longHold());
                     locker.ungrabAll();
                     typing.wait(rate.longHold());
                     typing.keyboard.release(controlAltK);
                 },
             .runsOfK = 1,
             .runsOfJ = 1,
             .before = [rate](Typing &) { rate.set(); }});
    }
    add("the modifiers are pressed twice while the key is held",
        {.keys =
             [=](Typing &typing) {
                 typing.awaitStart();
                 typing.keyboard.press({KEY_K});
                 typing.wait(longHold);
                 typing.keyboard.press({KEY_LEFTCTRL, KEY_LEFTALT});
                 typing.wait(30);
                 typing.keyboard.release({KEY_LEFTCTRL, KEY_LEFTALT});
                 typing.wait(200);
                 holdModifiers(typing, longHold);
             },
         .runsOfK = 1,
         .runsOfJ = 1,
         .reachesTheWindow = true});
    add("held since before the modifiers, and pressed again",
        {.keys =
             [=](Typing &typing) {
                 typing.awaitStart();
                 typing.keyboard.press({KEY_K});
                 typing.wait(longHold);
                 holdModifiers(typing, longHold);
                 typing.wait(30);
                 typing.keyboard.type(controlAltK);
             },
         .runsOfK = 2,
         .runsOfJ = 1,
         .reachesTheWindow = true});
}

void addQuickPresses(const AddRow &add)
{
    constexpr int presses = 20;
    for (const RepeatRate rate : repeatRates) {
        for (const int pause : {30, 50, 80}) {
            add("pressed 20 times, " + QByteArray::number(pause) + " ms apart" + rate.inWords(),
                {.keys =
                     [pause](Typing &typing) {
                         for (int i = 0; i < presses; ++i) {
                             typing.hold(controlAltK, pause / 2);
                             typing.wait(pause - pause / 2);
                         }
                     },
                 .runsOfK = presses,
                 .before = [rate](Typing &) { rate.set(); }});
        }
    }
}

// From the first repeat until the release, the program has the keyboard, so a single attempt can
// fail.
const QByteArray untilItsReasonIsGone = "--grab-keyboard --insist --until-gone reason";

void giveReasonToGrab(Typing &typing)
{
    QVERIFY(typing.reasonToGrab.open(QIODevice::WriteOnly));
}

void giveReasonToGrabBeforeRepeats(Typing &typing)
{
    lateRepeats.set();
    giveReasonToGrab(typing);
}

void addGrabsByTheApplication(const AddRow &add)
{
    add("the application takes the keyboard until after the keys' release",
        {.keys =
             [](Typing &typing) {
                 typing.keyboard.press(controlAltK);
                 typing.awaitGrabByApplication();
                 typing.keyboard.release(controlAltK);
                 typing.endGrabByApplication();
                 typing.typeToTheEnd();
             },
         .runsOfK = 2,
         .before = giveReasonToGrabBeforeRepeats,
         .argumentsOfK = untilItsReasonIsGone});
    add("the application takes the keyboard and gives it back while the keys are held",
        {.keys =
             [](Typing &typing) {
                 typing.keyboard.press(controlAltK);
                 typing.awaitGrabByApplication();
                 typing.wait(lateRepeats.longHold());
                 typing.endGrabByApplication();
                 typing.wait(lateRepeats.longHold());
                 typing.keyboard.release(controlAltK);
                 typing.wait(30);
                 typing.typeToTheEnd();
             },
         .runsOfK = 2,
         .before = giveReasonToGrabBeforeRepeats,
         .argumentsOfK = untilItsReasonIsGone});
    add("pressed for the application that has taken the keyboard",
        {.keys =
             [](Typing &typing) {
                 typing.hold(controlAltK, longHold);
                 typing.awaitGrabByApplication();
                 typing.keyboard.type(controlAltK);
                 typing.endGrabByApplication();
             },
         .runsOfK = 1,
         .before = giveReasonToGrab,
         .argumentsOfK = untilItsReasonIsGone});
}
} // namespace

class KeyHoldTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { usualRate.set(); }
    void cleanup() { restoreKeyboard(); }

    void runsOncePerPress_data()
    {
        const AddRow add = addRhythms();
        addHoldsThatBeganUnseen(add);
        addQuickPresses(add);
        addGrabsByTheApplication(add);
    }
    void runsOncePerPress()
    {
        QFETCH(const Rhythm, rhythm);
        verifyRuns(rhythm);
    }
};

QTEST_MAIN(KeyHoldTest)
#include "KeyHoldTest.moc"
