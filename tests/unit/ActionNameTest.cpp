// The names of desktops' actions, whatever their settings contain.

#include "platform/linux/desktopkeys/ActionName.h"

#include <QTest>

using namespace Qt::StringLiterals;

class ActionNameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void putsTheKeyOfASettingInWords_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("words");
        const auto add = [](const char *row, const QString &key, const QString &words) {
            QTest::newRow(row) << key << words;
        };
        add("one of XFCE's window manager", u"close_window_key"_s, u"Close window"_s);
        add("one with a number", u"switch_to_workspace_1_key"_s, u"Switch to workspace 1"_s);
        add("one of GNOME", u"close-window"_s, u"Close window"_s);
        add("two short words", u"video-out"_s, u"Video out"_s);
        add("one word", u"screenshot"_s, u"Screenshot"_s);
        add("a number without a separator", u"terminal0"_s, u"Terminal0"_s);
        add("a key that is a key", u"overlay-key"_s, u"Overlay key"_s);
        add("signs in a row", u"_a--b__c-"_s, u"A b c"_s);
        add("words with capitals", u"Switch to Next Layout"_s, u"Switch to Next Layout"_s);
        add("a letter that is not Latin", u"éteindre"_s, u"Éteindre"_s);
        add("a letter of two code units", u"𐐨-x"_s, u"𐐨 x"_s);
        add("nothing", QString(), QString());
        add("only the suffix", u"_key"_s, QString());
        add("only the word of the suffix", u"key"_s, u"Key"_s);
        add("only separators", u"-_-"_s, QString());
    }
    void putsTheKeyOfASettingInWords()
    {
        QFETCH(const QString, key);
        QTEST(wordsOf(key), "words");
    }

    void keepsNamesOnOneLineAndShort_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::optional<QString>>("name");
        const auto add = [](const char *row, const QString &text,
                            const std::optional<QString> &name) {
            QTest::newRow(row) << text << name;
        };
        add("a name", u"Close Window"_s, u"Close Window"_s);
        add("a command as it stands", u"sh -c  'a;b' %u"_s, u"sh -c  'a;b' %u"_s);
        add("markup as it stands", u"<b>&amp;</b>"_s, u"<b>&amp;</b>"_s);
        add("blanks around it", u" \t name\n"_s, u"name"_s);
        add("line breaks", u"a\r\nb\nc\u2028d"_s, u"a b c d"_s);
        add("control characters", u"a\0b\u001bc\u0085"_s, u"a b c"_s);
        add("what was not UTF-8", QString::fromUtf8("a\xff"), u"a\ufffd"_s);
        add("the longest that is kept whole", QString(200, u'x'), QString(200, u'x'));
        add("a longer one", u"a"_s + QString(10'000, u'x') + u'b',
            u"a"_s + QString(99, u'x') + u'…' + QString(98, u'x') + u'b');
        add("characters of two code units", u"𐐨"_s.repeated(5000),
            u"𐐨"_s.repeated(50) + u'…' + u"𐐨"_s.repeated(49));
        add("nothing", QString(), std::nullopt);
        add("blanks only", u" \n\t "_s, std::nullopt);
        add("control characters only", u"\u0001\u007f"_s, std::nullopt);
    }
    void keepsNamesOnOneLineAndShort()
    {
        QFETCH(const QString, text);
        QFETCH(const std::optional<QString>, name);
        QCOMPARE(actionName(text), name);
    }
};

QTEST_GUILESS_MAIN(ActionNameTest)
#include "ActionNameTest.moc"
