#include "platform/linux/launch/ExecLine.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const ExecFields fields{u"My Mail"_s, u"mail-icon"_s, u"/apps/mail.desktop"_s};
}

class ExecLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void splitsALineIntoArguments_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("arguments");
        const auto add = [](const char *row, const QString &line, const QStringList &arguments) {
            QTest::newRow(row) << line << arguments;
        };
        add("a program", u"mail"_s, {u"mail"_s});
        add("words", u"mail  --new\tmessage"_s, {u"mail"_s, u"--new"_s, u"message"_s});
        add("a quoted argument", u"mail \"two words\""_s, {u"mail"_s, u"two words"_s});
        add("an empty argument", u"mail \"\""_s, {u"mail"_s, u""_s});
        add("escapes in quotes", u"mail \"a\\\"b\\\\c\\$d\\`e\""_s, {u"mail"_s, u"a\"b\\c$d`e"_s});
        add("what a shell would expand", u"mail $HOME `id` *"_s,
            {u"mail"_s, u"$HOME"_s, u"`id`"_s, u"*"_s});
        add("no files to open", u"mail %f %F %u %U"_s, {u"mail"_s});
        add("no file within an argument", u"mail --open=%u"_s, {u"mail"_s, u"--open="_s});
        add("deprecated codes", u"mail %d %D %n %N %v %m"_s, {u"mail"_s});
        add("a percent sign", u"mail 100%%"_s, {u"mail"_s, u"100%"_s});
        add("a percent sign before a letter", u"mail %%u"_s, {u"mail"_s, u"%u"_s});
        add("a percent sign at the end", u"mail 5%"_s, {u"mail"_s, u"5%"_s});
        add("the name", u"mail --title %c"_s, {u"mail"_s, u"--title"_s, u"My Mail"_s});
        add("the icon", u"mail %i"_s, {u"mail"_s, u"--icon"_s, u"mail-icon"_s});
        add("the file", u"mail %k"_s, {u"mail"_s, u"/apps/mail.desktop"_s});
        add("letters beyond ASCII", u"mail “ünïcode”"_s, {u"mail"_s, u"“ünïcode”"_s});
    }
    void splitsALineIntoArguments()
    {
        QFETCH(const QString, line);
        QTEST(parseExecLine(line, fields).value(), "arguments");
    }

    void putsTheTargetWhereTheLineAsksForIt_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QUrl>("target");
        QTest::addColumn<QStringList>("arguments");
        const auto add = [](const char *row, const QString &line, const QUrl &target,
                            const QStringList &arguments) {
            QTest::newRow(row) << line << target << arguments;
        };
        const QUrl file = QUrl::fromLocalFile(u"/a b/c%.txt"_s);
        const QUrl address(u"https://example.com/a%20b"_s);
        add("a file by its path", u"mail %f -x"_s, file, {u"mail"_s, u"/a b/c%.txt"_s, u"-x"_s});
        add("files by their paths", u"mail %F"_s, file, {u"mail"_s, u"/a b/c%.txt"_s});
        add("a file by its address", u"mail %u"_s, file, {u"mail"_s, u"file:///a%20b/c%25.txt"_s});
        add("an address", u"mail %U"_s, address, {u"mail"_s, u"https://example.com/a%20b"_s});
        add("within an argument", u"mail --open=%u"_s, address,
            {u"mail"_s, u"--open=https://example.com/a%20b"_s});
        add("a file that is not asked for", u"mail -x"_s, file,
            {u"mail"_s, u"-x"_s, u"/a b/c%.txt"_s});
        add("an address that is not asked for", u"mail"_s, address,
            {u"mail"_s, u"https://example.com/a%20b"_s});
        add("an address for a program that opens files only", u"mail %f"_s, address, {u"mail"_s});
    }
    void putsTheTargetWhereTheLineAsksForIt()
    {
        QFETCH(const QString, line);
        QFETCH(const QUrl, target);
        QTEST(parseExecLine(line, {.target = target}).value(), "arguments");
    }

    void leavesOutAnIconThatIsNotThere()
    {
        QCOMPARE(parseExecLine(u"mail %i -x"_s, {}).value(), QStringList({u"mail"_s, u"-x"_s}));
    }

    void refusesALineThatIsNoCommand_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("empty") << u""_s;
        QTest::newRow("blanks") << u"  "_s;
        QTest::newRow("an open quotation") << u"mail \"two words"_s;
        QTest::newRow("only codes") << u"%U"_s;
    }
    void refusesALineThatIsNoCommand()
    {
        QFETCH(const QString, line);
        const auto arguments = parseExecLine(line, fields);
        QVERIFY(!arguments);
        QVERIFY(!arguments.error().description.isEmpty());
    }
};

QTEST_APPLESS_MAIN(ExecLineTest)
#include "ExecLineTest.moc"
