// The settings window with lists of any length: it opens as quickly and is as usable.

#include "support/Mouse.h"
#include "support/ProcessRest.h"
#include "support/ProgramOnTheBus.h"
#include "support/SettingsDesk.h"
#include "support/Windows.h"

#include <QTest>
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using State = Accessible::State;

namespace
{
/// As many entries as that, with Control+Option+K for the first and Control+Option+J for the last;
/// of the others, those of a thousand share no keys.
struct Desk : SettingsDesk {
    explicit Desk(int count)
    {
        constexpr std::array modifiers{0x1900, 0x1a00, 0x1100, 0x1200, 0x0900, 0x0a00,
                                       0x1b00, 0x1300, 0x0b00, 0x0300, 0x1000, 0x0800};
        constexpr int keys = 100;
        m_first = addApp(storedControlAltK);
        for (int index = 0; index < count - 2; ++index)
            program.addEntry("website", u"https://example.com/%1"_s.arg(index),
                             {index % keys, modifiers[size_t(index / keys) % modifiers.size()]});
        addApp(storedControlAltJ);
    }

    void start()
    {
        program.start();
        // Obeyed only when the start is over; keys are held long before.
        askToFire(m_first);
        QTRY_COMPARE(app.starts().size(), 1);
        awaitRest();
    }

    void openWindow()
    {
        askForSettings();
        QTRY_COMPARE(activeTitle(), u"Corvane"_s);
    }

    void awaitRest() const { ::awaitRest(program.processId()); }

    Mouse mouse;

private:
    QString m_first;
};

/// How much work the first opening of the window is.
double workOfOpening(int count)
{
    Desk desk(count);
    // Those who look at its parts would have it work for them.
    desk.program.isAccessible = false;
    desk.start();
    const double before = desk.program.cpuMilliseconds();
    desk.openWindow();
    desk.awaitRest();
    return desk.program.cpuMilliseconds() - before;
}
} // namespace

class LongListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensAThousandEntriesNearlyAsQuicklyAsTen()
    {
        double few = workOfOpening(10);
        double many = workOfOpening(1000);
        // A busy machine makes work longer, but never shorter.
        for (int times = 1; times < 16 && many > 1.5 * few; ++times) {
            few = std::min(few, workOfOpening(10));
            many = std::min(many, workOfOpening(1000));
        }
        qInfo("10 entries took %.1f ms, 1000 took %.1f ms", few, many);
        QVERIFY(many <= 1.5 * few);
    }

    void usesTheLastOfTenThousand()
    {
        Desk desk(10000);
        desk.start();
        desk.show();
        QVERIFY(desk.shows(Role::label, u"Ctrl+Alt+K"_s));
        const QRect bar = desk.all.find(u"scroll bar"_s, {}).geometry();
        QVERIFY(bar.isValid());
        desk.mouse.drag({bar.center().x(), bar.top() + bar.width() + 4}, bar.bottomRight());
        QTRY_VERIFY(desk.shows(Role::label, u"Ctrl+Alt+J"_s));
        QVERIFY(!desk.shows(Role::label, u"Ctrl+Alt+K"_s));
        desk.awaitRest();

        const Accessible row = desk.all.findAll(Role::row).constLast();
        desk.mouse.click(row.find(Role::checkBox, u"Enabled"_s).geometry().center());
        desk.awaitFree(KEY_J);
        desk.mouse.click(row.find(Role::button, u"Edit"_s).geometry().center());
        const Accessible sheet = desk.sheet(u"Edit shortcut"_s);
        QVERIFY(sheet.await(Role::button, u"Ctrl+Alt+J"_s).isThere());
    }

    void findsTheLastOfTenThousand()
    {
        Desk desk(10000);
        desk.start();
        desk.show();
        // An entry has Ctrl+F.
        const Accessible field = desk.all.find(Role::field, u"Search"_s);
        desk.mouse.click(field.geometry().center());
        QTRY_VERIFY(field.is(State::focused));
        desk.keyboard.write(u".desktop ctrl+alt+j"_s);
        QTRY_VERIFY(desk.shows(Role::label, u"Ctrl+Alt+J"_s));
        QTRY_VERIFY(!desk.shows(Role::label, u"Ctrl+Alt+K"_s));
        QCOMPARE(field.description(), u"1 of 10000 shortcuts"_s);
        desk.keyboard.type({KEY_DOWN});
        QTRY_COMPARE(desk.all.focused().name(), u"Edit"_s);
        desk.keyboard.type({KEY_SPACE});
        const Accessible sheet = desk.sheet(u"Edit shortcut"_s);
        QVERIFY(sheet.await(Role::button, u"Ctrl+Alt+J"_s).isThere());
        desk.keyboard.type({KEY_ESC});
        desk.awaitNoSheet();
        desk.mouse.click(field.geometry().center());
        QTRY_VERIFY(field.is(State::focused));
        desk.keyboard.type({KEY_ESC});
        QTRY_VERIFY(desk.shows(Role::label, u"Ctrl+Alt+K"_s));
        QCOMPARE(field.text(), QString());
    }
};

QTEST_MAIN(LongListTest)
#include "LongListTest.moc"
