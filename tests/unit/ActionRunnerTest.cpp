#include "actions/ActionRunner.h"
#include "fakes/FakeWorkspace.h"

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
        ActionRunner::run(entry, workspace, [this](const RunOutcome &ended) { outcome = ended; });
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

    void saysWhichKindsItCannotRunYet_data()
    {
        QTest::addColumn<ActionKind>("kind");
        QTest::newRow("path") << ActionKind::path;
        QTest::newRow("website") << ActionKind::website;
        QTest::newRow("shortcut") << ActionKind::shortcut;
    }
    void saysWhichKindsItCannotRunYet()
    {
        QFETCH(const ActionKind, kind);
        Run run;
        run.start({.name = u"Mail"_s, .kind = kind, .target = u"/"_s});
        QCOMPARE(run.outcome,
                 RunOutcome::failed(u"“Mail” cannot be run yet: this version opens apps only."_s));
    }
};

QTEST_GUILESS_MAIN(ActionRunnerTest)
#include "ActionRunnerTest.moc"
