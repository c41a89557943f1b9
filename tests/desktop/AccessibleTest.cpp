// Using a window from outside: all that an Accessible tells and does.

#include "support/Accessible.h"
#include "support/Keyboard.h"
#include "support/Mouse.h"
#include "support/Windows.h"

#include <QElapsedTimer>
#include <QMetaEnum>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTest>
#include <csignal>

using namespace Qt::StringLiterals;
using State = Accessible::State;

namespace
{
/// A program that shows one window of parts.
struct Program {
    Program()
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationDirPath() + u"/accessible-window"_s);
        QVERIFY(process.waitForStarted());
        parts = Accessible::program(pid_t(process.processId()));
        window = parts.await(u"filler"_s, u"Sample"_s);
        QTRY_VERIFY(window.is(State::active));
    }
    ~Program() { end(); }
    Q_DISABLE_COPY_MOVE(Program)

    void end()
    {
        process.kill();
        process.waitForFinished();
    }

    Accessible button(const QString &name) const { return window.find(u"push button"_s, name); }

    bool says(const QString &text) const { return window.find(u"label"_s, text).isThere(); }

    QProcess process;
    Accessible parts;
    Accessible window;
};

void expectWarning(const QString &beginning)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u'^' + beginning));
}
} // namespace

class AccessibleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatAPartIs()
    {
        const Program program;
        const Accessible greet = program.button(u"Greet"_s);
        QCOMPARE(greet.role(), u"push button"_s);
        QCOMPARE(greet.name(), u"Greet"_s);
        QCOMPARE(greet.description(), u"Says hello"_s);
        QCOMPARE(greet.actions(), QStringList({u"Press"_s, u"SetFocus"_s}));
        QCOMPARE(program.window.find(u"text"_s, u"Fixed"_s).text(), u"as it is"_s);
    }

    void tellsTheStateOfAPart_data()
    {
        QTest::addColumn<QString>("role");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QList<State>>("states");
        const auto button = u"push button"_s;
        const auto field = u"text"_s;
        QTest::newRow("a button shows and is enabled")
            << button << u"Greet"_s
            << QList{State::enabled, State::focusable, State::showing, State::visible};
        QTest::newRow("a disabled one only shows")
            << button << u"Off"_s << QList{State::focusable, State::showing, State::visible};
        QTest::newRow("a hidden one does not even show")
            << button << u"Hidden"_s << QList{State::enabled, State::focusable};
        QTest::newRow("the first field has the focus")
            << field << u"Name"_s << QList{State::editable, State::enabled, State::focusable,
                                           State::focused,  State::showing, State::visible};
        QTest::newRow("a fixed text is said to be both editable and read-only")
            << field << u"Fixed"_s << QList{State::editable, State::enabled, State::focusable,
                                            State::showing,  State::visible, State::readOnly};
    }
    void tellsTheStateOfAPart()
    {
        QFETCH(const QString, role);
        QFETCH(const QString, name);
        QFETCH(const QList<State>, states);
        const Program program;
        const Accessible part = program.window.find(role, name);
        const auto known = QMetaEnum::fromType<State>();
        for (int i = 0; i < known.keyCount(); ++i) {
            const State state = State(known.value(i));
            QVERIFY2(part.is(state) == states.contains(state), known.key(i));
        }
    }

    void belongsToTheProgramOfItsProcess()
    {
        Program one;
        const Program other;
        one.end();
        QVERIFY(!one.window.isThere());
        QVERIFY(other.window.isThere());
    }

    void pressesAButton()
    {
        const Program program;
        QVERIFY(program.button(u"Greet"_s).press());
        QTRY_VERIFY(program.says(u"Hello, "_s));
    }

    void writesIntoATextField()
    {
        const Program program;
        const Accessible name = program.window.find(u"text"_s, u"Name"_s);
        QVERIFY(name.setText(u"Bärbel"_s));
        QVERIFY(name.setText(u"Jürgen"_s));
        QCOMPARE(name.text(), u"Jürgen"_s);
        QVERIFY(program.button(u"Greet"_s).press());
        QTRY_VERIFY(program.says(u"Hello, Jürgen"_s));
    }

    void togglesACheckBox()
    {
        const Program program;
        const Accessible light = program.window.find(u"check box"_s, u"Light"_s);
        QVERIFY(light.toggle());
        QTRY_VERIFY(program.says(u"on"_s));
        QVERIFY(light.is(State::checked));
        QVERIFY(light.toggle());
        QTRY_VERIFY(program.says(u"off"_s));
        QVERIFY(!light.is(State::checked));
    }

    void choosesAnItem_data()
    {
        QTest::addColumn<QStringList>("items");
        QTest::newRow("the last") << QStringList{u"Blue"_s};
        QTest::newRow("one below the current one") << QStringList{u"Green"_s};
        QTest::newRow("one above the current one") << QStringList{u"Blue"_s, u"Red"_s};
    }
    void choosesAnItem()
    {
        QFETCH(const QStringList, items);
        const Program program;
        Keyboard keyboard;
        const Accessible color = program.window.find(u"combo box"_s, u"Red"_s);
        for (const QString &item : items) {
            QVERIFY(color.choose(item, keyboard));
            QTRY_VERIFY(program.says(item));
            QCOMPARE(color.name(), item);
        }
    }

    void givesTheFocusWithinAWindow()
    {
        const Program program;
        const Accessible greet = program.button(u"Greet"_s);
        QVERIFY(greet.focus());
        QTRY_VERIFY(greet.is(State::focused));
        Keyboard().type({KEY_SPACE});
        QTRY_VERIFY(program.says(u"Hello, "_s));
    }

    void tellsWhereAPartIsOnTheScreen()
    {
        const Program program;
        moveWindow(*windowOnScreen(u"Sample"_s), {300, 200});
        QTRY_COMPARE(program.window.geometry().topLeft(), QPoint(300, 200));
        Mouse().click(program.button(u"Greet"_s).geometry().center());
        QTRY_VERIFY(program.says(u"Hello, "_s));
    }

    void refusesWhatAUserCannotDo_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("action");
        QTest::newRow("press what is disabled") << u"Off"_s << u"Press"_s;
        QTest::newRow("press what is hidden") << u"Hidden"_s << u"Press"_s;
        QTest::newRow("press what is not there") << u"Nothing"_s << u"Press"_s;
        QTest::newRow("toggle a button") << u"Greet"_s << u"Toggle"_s;
    }
    void refusesWhatAUserCannotDo()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, action);
        const Program program;
        expectWarning(u"cannot do "_s + action);
        QVERIFY(!program.button(name).act(action));
    }

    void refusesToWriteWhereAUserCannot_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("into a fixed text") << u"Fixed"_s;
        QTest::newRow("into what is disabled") << u"Off"_s;
    }
    void refusesToWriteWhereAUserCannot()
    {
        QFETCH(const QString, name);
        const Program program;
        const Accessible field = program.window.find(u"text"_s, name);
        const QString before = field.text();
        expectWarning(u"cannot write into text \"%1\""_s.arg(name));
        QVERIFY(!field.setText(u"new"_s));
        QCOMPARE(field.text(), before);
    }

    void refusesToChooseWhatIsNotInTheList()
    {
        const Program program;
        Keyboard keyboard;
        expectWarning(u"cannot choose \"Pink\" in\ncombo box \"Red\""_s);
        QVERIFY(!program.window.find(u"combo box"_s, u"Red"_s).choose(u"Pink"_s, keyboard));
    }

    void findsTheNearestFirstAndThoseOfOneParentInTheirOrder()
    {
        const Program program;
        QStringList names;
        for (const Accessible &item : program.window.findAll(u"list item"_s).sliced(0, 5))
            names << item.name();
        QCOMPARE(names, QStringList({u"Red"_s, u"Green"_s, u"Blue"_s, u"Row 1"_s, u"Row 2"_s}));
    }

    void findsOnlyWhatIsBelow()
    {
        const Program program;
        const Accessible row = program.window.find(u"list item"_s, u"Row 2"_s);
        QCOMPARE(row.findAll(u"push button"_s, u"Remove"_s).size(), 1);
        QVERIFY(row.find(u"push button"_s, u"Remove"_s).press());
        QTRY_VERIFY(!row.isThere());
        QVERIFY(program.window.find(u"list item"_s, u"Row 1"_s).isThere());
    }

    void searchesALargeWindowInNoTime()
    {
        const Program program;
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(program.window.findAll(u"push button"_s, u"Remove"_s).size(), 100);
        QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    }

    void findsTheDialogThatShowsAmongThoseThatAreClosed()
    {
        const Program program;
        for (int i = 0; i < 2; ++i) {
            QVERIFY(program.button(u"Ask"_s).press());
            const Accessible question = program.parts.await(u"dialog"_s, u"Question"_s);
            QVERIFY(question.await(u"push button"_s, u"Yes"_s).press());
            QTRY_VERIFY(!question.is(State::showing));
        }
        QVERIFY(program.says(u"Yes"_s));
        QCOMPARE(program.parts.findAll(u"dialog"_s, u"Question"_s).size(), 2);
    }

    void showsTheTreeWhenItAwaitsInVain()
    {
        const Program program;
        const Accessible row = program.window.find(u"list item"_s, u"Row 2"_s);
        expectWarning(u"there is no push button \"Add\" in\n"
                      "list item \"Row 2\" \\[enabled showing visible\\] \\(\\)\n"
                      "  label \"Row 2\" \\[enabled showing visible readOnly\\] \\(\\)\n"
                      "  push button \"Remove\" \\[enabled focusable showing visible\\] "
                      "\\(Press, SetFocus\\)\n"_s);
        QVERIFY(!row.await(u"push button"_s, u"Add"_s, 300).isThere());
    }

    void isGoneWithTheProgram()
    {
        Program program;
        const Accessible greet = program.button(u"Greet"_s);
        program.end();
        QVERIFY(!greet.isThere());
        QCOMPARE(greet.name(), QString());
        QCOMPARE(greet.actions(), QStringList());
        QCOMPARE(greet.geometry(), QRect());
        QVERIFY(!greet.is(State::showing));
        QCOMPARE(program.window.findAll(u"push button"_s), QList<Accessible>());
    }

    void isTakenForGoneWhileTheProgramHangs()
    {
        const Program program;
        const Accessible greet = program.button(u"Greet"_s);
        const pid_t process = pid_t(program.process.processId());
        QCOMPARE(kill(process, SIGSTOP), 0);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!greet.isThere());
        QVERIFY(timer.elapsed() < 10000);
        QCOMPARE(kill(process, SIGCONT), 0);
        QTRY_VERIFY(greet.isThere());
    }
};

QTEST_GUILESS_MAIN(AccessibleTest)
#include "AccessibleTest.moc"
