#include "words/DesignWording.h"
#include "platform/KeyUser.h"

#include <QTest>

using namespace Qt::StringLiterals;

class DesignWordingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesKeysWithSigns_data()
    {
        QTest::addColumn<qint64>("keyCode");
        QTest::addColumn<qint64>("modifiers");
        QTest::addColumn<QString>("text");
        QTest::newRow("all modifiers, in their order")
            << qint64(40) << qint64(0x1B00) << u"⌃⌥⇧⌘K"_s;
        QTest::newRow("no modifier") << qint64(49) << qint64(0) << u"Space"_s;
        QTest::newRow("a key without a name") << qint64(105) << qint64(256) << u"⌘Key 105"_s;
    }
    void writesKeysWithSigns()
    {
        QFETCH(const qint64, keyCode);
        QFETCH(const qint64, modifiers);
        QTEST(words.keys(keyCode, modifiers), "text");
    }

    void saysWhatTheDesignSays_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const auto add = [](const char *row, const QString &text, const QString &expected) {
            QTest::newRow(row) << text << expected;
        };
        add("the modifiers", words.requiredModifiers(), u"⌘, ⌥ or ⌃"_s);
        add("keys of the system", words.alreadyUsed(u"⌘K"_s, {}),
            u"⌘K is already used by macOS. It may not work."_s);
        add("keys of an action", words.alreadyUsed(u"⌘K"_s, {KeyUser::Kind::desktop, u"Close"_s}),
            u"⌘K is already used by macOS. It may not work."_s);
        add("keys of another program", words.alreadyUsed(u"⌘K"_s, {KeyUser::Kind::program}),
            u"⌘K is already used by macOS. It may not work."_s);
        add("a file that does not open", words.couldNotOpen(u"“a.txt”"_s),
            u"macOS could not open “a.txt”."_s);
        add("a website that does not open", words.couldNotOpen(u"the website"_s),
            u"macOS could not open the website."_s);
        add("a Shortcut that does not run", words.couldNotRunShortcuts(),
            u"macOS could not open the Shortcuts app."_s);
        add("the computer", words.computer(), u"Mac"_s);
        add("the system", words.system(), u"macOS"_s);
        add("the login item", words.loginItemIsOff(),
            u"macOS needs your approval in Login Items."_s);
        add("its settings", words.openLoginItems(), u"Open Login Items"_s);
        add("the field for a Shortcut", words.nameOfShortcut(),
            u"Name of the Shortcut, exactly as in the Shortcuts app"_s);
        add("the credits", words.credits(),
            u"Global hotkeys use Apple's Carbon hot key API. No third-party code is included."_s);
    }
    void saysWhatTheDesignSays()
    {
        QFETCH(const QString, text);
        QTEST(text, "expected");
    }

    void hasNoVersion() { QVERIFY(!words.version()); }

private:
    DesignWording words;
};

QTEST_GUILESS_MAIN(DesignWordingTest)
#include "DesignWordingTest.moc"
