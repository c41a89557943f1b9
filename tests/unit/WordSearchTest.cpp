// Searching by words.

#include "foundation/WordSearch.h"

#include <QTest>

using namespace Qt::StringLiterals;

class WordSearchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finds_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isFound");
        const auto add = [](const char *row, const QString &words, const QString &text,
                            bool isFound) { QTest::newRow(row) << words << text << isFound; };
        add("a part of a word", u"eath"_s, u"Weather"_s, true);
        add("another word", u"news"_s, u"Weather"_s, false);
        add("upper case", u"WEATHER"_s, u"weather"_s, true);
        add("words in another order", u"report weather"_s, u"Weather report"_s, true);
        add("a word too many", u"weather news"_s, u"Weather report"_s, false);
        add("spaces around", u" weather \t"_s, u"Weather"_s, true);
        add("only spaces", u"  "_s, u"Weather"_s, true);
        add("nothing", {}, {}, true);
        add("a word in nothing", u"a"_s, {}, false);
        add("an accent left out", u"cafe"_s, u"Café"_s, true);
        add("an accent too many", u"càfe"_s, u"cafe"_s, true);
        add("another form of an accent", u"cafe\u0301"_s, u"caf\u00e9"_s, true);
        add("a sharp s", u"strasse"_s, u"Straße"_s, true);
        add("a sharp s in capitals", u"strasse"_s, u"STRAẞE"_s, true);
        add("a direction mark too many", u"\u200Fweather"_s, u"Weather"_s, true);
        add("a direction mark left out", u"weather"_s, u"Wea\u200Ether"_s, true);
        add("a soft hyphen left out", u"weather"_s, u"Wea\u00ADther"_s, true);
        add("a ligature", u"file"_s, u"\ufb01le"_s, true);
        add("a dotted I", u"istanbul"_s, u"İstanbul"_s, true);
        add("a dotless i", u"diyarbakir"_s, u"Diyarbakır"_s, true);
        add("Cyrillic", u"ПОЧТА"_s, u"почта"_s, true);
        add("Arabic without vowel signs", u"كتب"_s, u"كَتَبَ"_s, true);
        add("Chinese", u"图片"_s, u"我的图片"_s, true);
        add("an emoji", u"📁"_s, u"📁 Papers"_s, true);
        add("another emoji of the same half", u"📂"_s, u"📁 Papers"_s, false);
        add("keys", u"ctrl+alt+j"_s, u"Ctrl+Alt+J"_s, true);
        add("signs of keys", u"⌥J"_s, u"⌃⌥J"_s, true);
    }
    void finds()
    {
        QFETCH(const QString, words);
        QFETCH(const QString, text);
        QTEST(WordSearch(words).finds(WordSearch::folded(text)), "isFound");
    }

    void isBlankWithoutWords()
    {
        QVERIFY(WordSearch({}).isBlank());
        QVERIFY(WordSearch(u" \n "_s).isBlank());
        QVERIFY(!WordSearch(u"."_s).isBlank());
    }
};

QTEST_GUILESS_MAIN(WordSearchTest)
#include "WordSearchTest.moc"
