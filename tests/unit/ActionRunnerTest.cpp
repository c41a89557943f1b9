#include "actions/ActionRunner.h"
#include "fakes/FakeWorkspace.h"
#include "words/DesignWording.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// An outcome, once there is one.
struct Run {
    FakeWorkspace workspace;
    std::optional<RunOutcome> outcome;

    void start(const LaunchEntry &entry)
    {
        ActionRunner::run(entry, workspace, DesignWording(), {.activates = true},
                          [this](const RunOutcome &ended) { outcome = ended; });
    }
};

LaunchEntry existingApp()
{
    return {.name = u"Mail"_s, .target = QCoreApplication::applicationFilePath()};
}
} // namespace

class ActionRunnerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasThreeOutcomesInAFixedOrder()
    {
        QCOMPARE(int(RunOutcome::missing({}).outcome), 0);
        QCOMPARE(int(RunOutcome::failed({}).outcome), 1);
        QCOMPARE(int(RunOutcome::success().outcome), 2);
    }

    void opensAnAppAndAwaitsItsStart()
    {
        Run run;
        run.start(existingApp());
        QCOMPARE(run.workspace.opened, QStringList({existingApp().target}));
        QCOMPARE(run.workspace.activating, QList<bool>{true});
        QCOMPARE(run.outcome, std::nullopt);
        run.workspace.finish();
        QCOMPARE(run.outcome, RunOutcome::success());
    }

    void passesOnWhyAnAppCouldNotBeOpened()
    {
        Run run;
        run.start(existingApp());
        run.workspace.finish(Error{u"Permission denied"_s});
        QCOMPARE(run.outcome, RunOutcome::failed(u"Could not open the app: Permission denied"_s));
    }

    void missesAnAppThatIsNotThere_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("no such file") << u"/nowhere/mail.desktop"_s;
        QTest::newRow("empty") << u""_s;
        QTest::newRow("a tilde is not expanded") << u"~"_s;
        QTest::newRow("blanks are not trimmed") << u" / "_s;
    }
    void missesAnAppThatIsNotThere()
    {
        QFETCH(const QString, target);
        Run run;
        run.start({.name = u"Mail"_s, .target = target});
        QCOMPARE(run.outcome,
                 RunOutcome::missing(
                     u"The app for “Mail” was not found. It may have been moved or deleted."_s));
        QVERIFY(run.workspace.opened.isEmpty());
    }

    void missesOnlyWhatShouldBeAFile_data()
    {
        QTest::addColumn<ActionKind>("kind");
        QTest::addColumn<QString>("target");
        QTest::addColumn<std::optional<QString>>("reason");
        const std::optional<QString> notFound = u"Not found"_s;
        QTest::newRow("an app that is not there") << ActionKind::app << u"/nowhere"_s << notFound;
        QTest::newRow("a path that is not there") << ActionKind::path << u"/nowhere"_s << notFound;
        QTest::newRow("a path without a target") << ActionKind::path << u""_s << notFound;
        QTest::newRow("a folder that is there")
            << ActionKind::path << QDir::tempPath() << std::optional<QString>();
        QTest::newRow("a website") << ActionKind::website << u""_s << std::optional<QString>();
        QTest::newRow("a Shortcut") << ActionKind::shortcut << u""_s << std::optional<QString>();
    }
    void missesOnlyWhatShouldBeAFile()
    {
        QFETCH(const ActionKind, kind);
        QFETCH(const QString, target);
        QTEST(ActionRunner::missingReason({.kind = kind, .target = target}), "reason");
    }

    void handsAPathWebsiteOrShortcutToTheSystem_data()
    {
        QTest::addColumn<ActionKind>("kind");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("address");
        QTest::newRow("a folder") << ActionKind::path << u"/usr/share"_s << u"file:///usr/share"_s;
        QTest::newRow("an https address") << ActionKind::website << u"https://example.com/a?b=c#d"_s
                                          << u"https://example.com/a?b=c#d"_s;
        QTest::newRow("an http address with blanks around it")
            << ActionKind::website << u" \thttp://example.com \n"_s << u"http://example.com"_s;
        QTest::newRow("an address with letters of other scripts")
            << ActionKind::website << u"https://example.com/Käse und Brot"_s
            << u"https://example.com/K%C3%A4se%20und%20Brot"_s;
        QTest::newRow("a Shortcut") << ActionKind::shortcut << u"My Flow & More"_s
                                    << u"shortcuts://run-shortcut?name=My%20Flow%20%26%20More"_s;
        QTest::newRow("a Shortcut's blanks are part of its name")
            << ActionKind::shortcut << u" Flow "_s << u"shortcuts://run-shortcut?name=%20Flow%20"_s;
    }
    void handsAPathWebsiteOrShortcutToTheSystem()
    {
        QFETCH(const ActionKind, kind);
        QFETCH(const QString, target);
        QFETCH(const QString, address);
        Run run;
        run.start({.name = u"Mail"_s, .kind = kind, .target = target});
        QCOMPARE(run.workspace.opened, QStringList({address}));
        QCOMPARE(run.outcome, std::nullopt);
        run.workspace.finish();
        QCOMPARE(run.outcome, RunOutcome::success());
    }

    void saysWhatTheSystemCouldNotOpen_data()
    {
        QTest::addColumn<ActionKind>("kind");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("message");
        QTest::newRow("a file") << ActionKind::path << QCoreApplication::applicationFilePath()
                                << u"macOS could not open “ActionRunnerTest”."_s;
        QTest::newRow("a folder with a slash at its end")
            << ActionKind::path << u"/usr/share/"_s << u"macOS could not open “share”."_s;
        QTest::newRow("the root folder")
            << ActionKind::path << u"/"_s << u"macOS could not open “/”."_s;
        QTest::newRow("a website") << ActionKind::website << u"https://example.com"_s
                                   << u"macOS could not open the website."_s;
        QTest::newRow("a Shortcut")
            << ActionKind::shortcut << u"Flow"_s << u"macOS could not open the Shortcuts app."_s;
    }
    void saysWhatTheSystemCouldNotOpen()
    {
        QFETCH(const ActionKind, kind);
        QFETCH(const QString, target);
        QFETCH(const QString, message);
        Run run;
        run.start({.name = u"Mail"_s, .kind = kind, .target = target});
        run.workspace.finish(Error{u"Operation not supported"_s});
        QCOMPARE(run.outcome, RunOutcome::failed(message));
    }

    void missesAFileOrFolderThatIsNotThere()
    {
        Run run;
        run.start({.name = u"Notes"_s, .kind = ActionKind::path, .target = u"/nowhere"_s});
        QCOMPARE(run.outcome,
                 RunOutcome::missing(u"The file or folder for “Notes” was not found. It may have "
                                     "been moved or deleted."_s));
        QVERIFY(run.workspace.opened.isEmpty());
    }

    void refusesWhatIsNoWebsite_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("empty") << u""_s;
        QTest::newRow("no scheme") << u"example.com"_s;
        QTest::newRow("another scheme") << u"ftp://example.com"_s;
        QTest::newRow("a scheme in capitals") << u" HTTPS://example.com "_s;
        QTest::newRow("a scheme in mixed case") << u"Http://example.com"_s;
        QTest::newRow("a scheme alone") << u"https://"_s;
        QTest::newRow("a path without a host") << u"http:///path"_s;
        QTest::newRow("a port without a host") << u"http://:80/"_s;
        QTest::newRow("a host with a blank in it") << u"http://exam ple.com/"_s;
    }
    void refusesWhatIsNoWebsite()
    {
        QFETCH(const QString, target);
        Run run;
        run.start({.name = u"Mail"_s, .kind = ActionKind::website, .target = target});
        QCOMPARE(run.outcome,
                 RunOutcome::failed(u"“%1” is not a valid web address. It must start with http:// "
                                    "or https://."_s.arg(target)));
        QVERIFY(run.workspace.opened.isEmpty());
        QVERIFY(!ActionRunner::isValidWebsite(target));
    }

    void takesBlanksAroundAWebsite()
    {
        QVERIFY(ActionRunner::isValidWebsite(u"  https://example.com\n"_s));
    }

    void encodesTheNamesOfShortcuts_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("encoded");
        QTest::newRow("letters and digits") << u"Flow2"_s << QByteArray("Flow2");
        QTest::newRow("what needs no encoding") << u"a-b.c_d~e"_s << QByteArray("a-b.c_d~e");
        QTest::newRow("a slash") << u"a/b"_s << QByteArray("a%2Fb");
        QTest::newRow("a per cent sign") << u"100%"_s << QByteArray("100%25");
        QTest::newRow("what separates parameters")
            << u"a&b=c#d+e?f"_s << QByteArray("a%26b%3Dc%23d%2Be%3Ff");
        QTest::newRow("an emoji") << u"🚀"_s << QByteArray("%F0%9F%9A%80");
        QTest::newRow("nothing") << u""_s << QByteArray();
    }
    void encodesTheNamesOfShortcuts()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, encoded);
        QCOMPARE(ActionRunner::shortcutURL(name).value().toEncoded(),
                 "shortcuts://run-shortcut?name=" + encoded);
    }

    void saysThatANameCannotBeALink()
    {
        const QString half(QChar(0xd800));
        Run run;
        run.start({.name = u"Mail"_s, .kind = ActionKind::shortcut, .target = half});
        QCOMPARE(run.outcome,
                 RunOutcome::failed(
                     u"The Shortcut name “%1” could not be turned into a link."_s.arg(half)));
        QVERIFY(run.workspace.opened.isEmpty());
    }
};

QTEST_GUILESS_MAIN(ActionRunnerTest)
#include "ActionRunnerTest.moc"
