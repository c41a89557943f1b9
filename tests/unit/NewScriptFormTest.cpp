// How the editor makes a Shortcut: the form that asks for its name, and what becomes of the answer.

#include "settings/NewScriptForm.h"
#include "support/EditorSheet.h"
#include "viewkit/FocusReturn.h"

#include <QComboBox>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
const QString noEditor = u"The script was made, but no text editor could be opened."_s;
const QString noFolder = u"Your shortcuts folder could not be opened."_s;

/// The editor of a new entry that runs a Shortcut.
struct Editor : EditorSheet {
    explicit Editor(const LaunchEntry &edited = {.kind = ActionKind::shortcut})
        : EditorSheet(edited)
    {
        open();
    }

    void click(const QString &label) const { QTest::mouseClick(button(label), Qt::LeftButton); }

    /// The form for the name, once it is in front; null if it does not come.
    Sheet *ask() const
    {
        click(u"New…"_s);
        auto *const asking = form->findChild<Sheet *>();
        const auto isActive = [asking] { return asking && asking->isActiveWindow(); };
        return QTest::qWaitFor(isActive) ? asking : nullptr;
    }

    // Of the application, as in the program.
    const FocusReturn focusReturn;
};

QLineEdit *nameField(Sheet &asking)
{
    return qobject_cast<QLineEdit *>(seen(asking, QAccessible::EditableText, u"Name"_s));
}

/// Replaces the name, and presses Return.
void answer(Sheet &asking, const QString &name)
{
    nameField(asking)->setText(name);
    QTest::keyClick(nameField(asking), Qt::Key_Return);
}

using Act = std::function<void(Editor &editor, Sheet &asking)>;
} // namespace

Q_DECLARE_METATYPE(Act)

class NewScriptFormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isOfferedBesideTheFieldForAShortcutOnly()
    {
        Editor editor;
        for (const QString &label : {u"New…"_s, u"Open Folder"_s})
            QVERIFY(seenButton(*editor.form, label));
        editor.form->findChild<QComboBox *>()->setCurrentText(u"Open a website"_s);
        QTRY_VERIFY(!seenButton(*editor.form, u"New…"_s));
        QVERIFY(!seenButton(*editor.form, u"Open Folder"_s));
    }

    void asksForTheName()
    {
        Editor editor;
        Sheet *const asking = editor.ask();
        QVERIFY(asking);
        QCOMPARE(asking->windowTitle(), u"New script"_s);
        QVERIFY(nameField(*asking)->hasFocus());
        QCOMPARE(nameField(*asking)->text(), QString());
        QVERIFY(qobject_cast<QPushButton *>(seenButton(*asking, u"Create"_s))->isDefault());
    }

    void asksOnceForTwoClicks()
    {
        Editor editor;
        // Assistive programs can press it again behind the form.
        editor.click(u"New…"_s);
        editor.click(u"New…"_s);
        QCOMPARE(editor.form->findChildren<Sheet *>().size(), 1);
    }

    void proposesTheNameThatNoShortcutHas_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("proposed");
        QTest::newRow("a new name") << u" Tidy Up "_s << u"Tidy Up"_s;
        QTest::newRow("that of a Shortcut") << u"Dark"_s << QString();
    }
    void proposesTheNameThatNoShortcutHas()
    {
        QFETCH(const QString, typed);
        Editor editor({.kind = ActionKind::shortcut, .target = typed});
        editor.platform.shortcutLibrary.shortcuts = {u"Dark"_s};
        Sheet *const asking = editor.ask();
        QVERIFY(asking);
        QTEST(nameField(*asking)->text(), "proposed");
    }

    void makesTheShortcutAndOpensItInTheTextEditor()
    {
        Editor editor;
        QPointer<Sheet> asking = editor.ask();
        QVERIFY(asking);
        answer(*asking, u"  Tidy Up "_s);
        QCOMPARE(editor.platform.shortcutLibrary.created, QStringList(u"Tidy Up"_s));
        QTRY_COMPARE(editor.platform.workspace.edited, QStringList(u"/my/shortcuts/Tidy Up"_s));
        QTRY_VERIFY(!asking);
        QCOMPARE(editor.field(u"Shortcut"_s)->text(), u"Tidy Up"_s);
        QTRY_VERIFY(editor.field(u"Shortcut"_s)->hasFocus());
        editor.platform.workspace.finish();
        QVERIFY(!editor.shows(noEditor));
        QCOMPARE(editor.closings, 0);
    }

    void namesTheEntryByTheShortcut_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        QTest::newRow("an empty name") << QString() << u"Tidy"_s;
        QTest::newRow("a name of blanks is none") << u" \t"_s << u"Tidy"_s;
        QTest::newRow("a typed name stays") << u"Mine"_s << u"Mine"_s;
    }
    void namesTheEntryByTheShortcut()
    {
        QFETCH(const QString, typed);
        Editor editor({.name = typed, .kind = ActionKind::shortcut});
        Sheet *const asking = editor.ask();
        QVERIFY(asking);
        answer(*asking, u"Tidy"_s);
        QTEST(editor.field(u"Name"_s)->text(), "name");
    }

    void opensTheTextEditorOnceTheFocusIsBack()
    {
        Editor editor;
        Sheet *const asking = editor.ask();
        QVERIFY(asking);
        answer(*asking, u"Tidy"_s);
        QVERIFY(editor.platform.workspace.edited.isEmpty());
        QTRY_COMPARE(editor.platform.workspace.edited.size(), 1);
        QVERIFY(editor.sheet->isActiveWindow());
        QVERIFY(editor.field(u"Shortcut"_s)->hasFocus());
    }

    void opensTheTextEditorThoughItIsClosedAtOnce()
    {
        Editor editor;
        Sheet *const asking = editor.ask();
        QVERIFY(asking);
        answer(*asking, u"Tidy"_s);
        editor.click(u"Cancel"_s);
        QCOMPARE(editor.closings, 1);
        const QStringList &edited = editor.platform.workspace.edited;
        QCOMPARE(edited, QStringList(u"/my/shortcuts/Tidy"_s));
        // Not once more when it would have been opened.
        QVERIFY(!QTest::qWaitFor([&edited] { return edited.size() > 1; }, 400));
    }

    void saysWhyNothingIsMade()
    {
        Editor editor;
        Sheet *const asking = editor.ask();
        QVERIFY(asking);
        editor.platform.shortcutLibrary.error = Error{u"It failed."_s};
        answer(*asking, u"Tidy"_s);
        QVERIFY(seenText(*asking, u"It failed."_s));
        QCOMPARE(nameField(*asking)->text(), u"Tidy"_s);
        QCOMPARE(editor.field(u"Shortcut"_s)->text(), QString());
        editor.platform.shortcutLibrary.error.reset();
        answer(*asking, u"Tidy 2"_s);
        QCOMPARE(editor.field(u"Shortcut"_s)->text(), u"Tidy 2"_s);
        QTRY_COMPARE(editor.platform.workspace.edited, QStringList(u"/my/shortcuts/Tidy 2"_s));
    }

    void makesNothingWhenItIsCancelled_data()
    {
        QTest::addColumn<Act>("cancel");
        QTest::newRow("by Escape") << Act(
            [](Editor &, Sheet &asking) { QTest::keyClick(nameField(asking), Qt::Key_Escape); });
        QTest::newRow("by its button") << Act([](Editor &, Sheet &asking) {
            QTest::mouseClick(seenButton(asking, u"Cancel"_s), Qt::LeftButton);
        });
        QTest::newRow("by another kind, chosen behind it") << Act([](Editor &editor, Sheet &) {
            editor.form->findChild<QComboBox *>()->setCurrentText(u"Open a website"_s);
            editor.form->refresh();
        });
    }
    void makesNothingWhenItIsCancelled()
    {
        QFETCH(const Act, cancel);
        Editor editor;
        const QPointer<Sheet> asking = editor.ask();
        QVERIFY(asking);
        QLineEdit *const name = nameField(*asking);
        name->setText(u"Tidy"_s);
        cancel(editor, *asking);
        QVERIFY(!asking->isVisible());
        // A key that was typed before.
        QTest::keyClick(name, Qt::Key_Return);
        QTRY_VERIFY(!asking);
        QCOMPARE(editor.platform.shortcutLibrary.created, QStringList());
        QCOMPARE(editor.closings, 0);
    }

    void saysThatThereIsNoTextEditor()
    {
        Editor editor;
        Sheet *const asking = editor.ask();
        QVERIFY(asking);
        answer(*asking, u"Tidy"_s);
        QTRY_COMPARE(editor.platform.workspace.edited.size(), 1);
        editor.platform.workspace.finish(Error{});
        QVERIFY(editor.shows(noEditor));
        QCOMPARE(editor.field(u"Shortcut"_s)->text(), u"Tidy"_s);
    }

    void hearsNothingOfTheTextEditorOnceItIsClosed()
    {
        Editor editor;
        Sheet *const asking = editor.ask();
        QVERIFY(asking);
        answer(*asking, u"Tidy"_s);
        QTRY_COMPARE(editor.platform.workspace.edited.size(), 1);
        delete editor.sheet;
        editor.platform.workspace.finish(Error{});
    }

    void goesWithTheEditor()
    {
        Editor editor;
        const QPointer<Sheet> asking = editor.ask();
        QVERIFY(asking);
        delete editor.sheet;
        QVERIFY(!asking);
    }

    void opensTheFolder()
    {
        Editor editor;
        editor.click(u"Open Folder"_s);
        QCOMPARE(editor.platform.workspace.edited, QStringList(u"/my/shortcuts"_s));
        editor.platform.workspace.finish();
        QVERIFY(!editor.shows(noFolder));
        editor.click(u"Open Folder"_s);
        editor.platform.workspace.finish(Error{});
        QVERIFY(editor.shows(noFolder));
    }

    void saysWhyThereIsNoFolderToOpen()
    {
        Editor editor;
        editor.platform.shortcutLibrary.error = Error{u"It failed."_s};
        editor.click(u"Open Folder"_s);
        QVERIFY(editor.shows(u"It failed."_s));
        QVERIFY(editor.platform.workspace.edited.isEmpty());
    }
};

QTEST_MAIN(NewScriptFormTest)
#include "NewScriptFormTest.moc"
