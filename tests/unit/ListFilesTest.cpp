// Import and export as the user does them: buttons, file panels, and what the window tells.

#include "support/LittleSpace.h"
#include "support/SettingsWindow.h"

#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
const QString wrong = u"Something went wrong"_s;
const QString noImport = u"That file could not be imported. Is it a Corvane export?"_s;
const QString noExport = u"The list could not be exported."_s;

LaunchEntry website(const QString &name)
{
    return SettingsWindow::website(name);
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QFile::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

/// An export of that many entries.
QByteArray exportOf(int count)
{
    QByteArrayList items;
    for (int index = 0; index < count; ++index)
        items << R"({"name":"Site","kind":"website","target":"https://a.org","isEnabled":true})";
    return R"({"version":1,"items":[)" + items.join(',') + "]}";
}

/// The settings window, and a folder for files.
struct Desk : SettingsWindow {
    using SettingsWindow::SettingsWindow;

    QFileDialog &panel(const QString &title) { return *qobject_cast<QFileDialog *>(&sheet(title)); }

    static void type(QFileDialog &panel, const QString &path)
    {
        auto *const field = panel.findChild<QLineEdit *>();
        field->setText(path);
        QTest::keyClick(field, Qt::Key_Return);
        settle();
    }

    void importFrom(const QString &path)
    {
        click(u"Import…"_s);
        type(panel(u"Import"_s), path);
    }

    void exportTo(const QString &path)
    {
        click(u"Export…"_s);
        type(panel(u"Export"_s), path);
    }

    /// What is asked before a file is replaced.
    static QMessageBox *question()
    {
        for (QWidget *const window : QApplication::topLevelWidgets()) {
            if (auto *const box = qobject_cast<QMessageBox *>(window); box && box->isVisible())
                return box;
        }
        return nullptr;
    }

    QString path(const QString &name) const { return folder.filePath(name); }

    QTemporaryDir folder;
};
} // namespace

class ListFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void importsAFile()
    {
        Desk desk({website(u"News"_s)});
        write(desk.path(u"list.json"_s), exportOf(2));
        desk.importFrom(desk.path(u"list.json"_s));
        QTRY_VERIFY(sheets().isEmpty());
        QCOMPARE(desk.store->entries().size(), 3);
        QTRY_COMPARE(seenAll(*desk.view, QAccessible::ListItem).size(), 3);
    }

    void tellsInPlaceOfTheListHowManyWereImported_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("message");
        QTest::newRow("none") << 0 << u"Imported 0 shortcuts."_s;
        QTest::newRow("one") << 1 << u"Imported 1 shortcut."_s;
        QTest::newRow("two") << 2 << u"Imported 2 shortcuts."_s;
    }
    void tellsInPlaceOfTheListHowManyWereImported()
    {
        QFETCH(const int, count);
        QFETCH(const QString, message);
        Desk desk;
        write(desk.path(u"list.json"_s), exportOf(count));
        desk.importFrom(desk.path(u"list.json"_s));
        QTRY_COMPARE(desk.shows(message), count == 0);
        // Seen again once the list is empty.
        for (int index = 0; index < count; ++index)
            desk.click(u"Delete"_s);
        QTRY_VERIFY(desk.shows(message));
        const QWidget *const line = seenText(*desk.view, message);
        QCOMPARE(line->font(), font(TextStyle::caption));
        QCOMPARE(line->palette().color(QPalette::WindowText),
                 color(TextColor::secondary, desk.view->palette()));
    }

    void tellsNothingBeforeAnImport()
    {
        Desk desk;
        for (const QString &text : seenTexts(*desk.view))
            QVERIFY(!text.contains(u"Imported"_s));
    }

    void refusesWhatIsNoExport_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("an empty file") << QByteArray();
        QTest::newRow("no JSON") << QByteArray("hello");
        QTest::newRow("other JSON") << QByteArray("[]");
        QTest::newRow("one bad item among good ones")
            << exportOf(3).replace("]}", R"(,{"name":"x"}]})");
        QTest::newRow("what is not UTF-8") << exportOf(1).replace("Site", "S\xff");
        QTest::newRow("what is nested without end") << QByteArray(1'000'000, '[');
    }
    void refusesWhatIsNoExport()
    {
        QFETCH(const QByteArray, content);
        Desk desk({website(u"News"_s)});
        const auto entries = desk.store->entries();
        const QByteArray file =
            ::content(desk.platform.applicationSupport.filePath(u"Corvane/entries.json"_s));
        const auto defaults = desk.platform.userDefaults.values;
        write(desk.path(u"list.json"_s), content);
        desk.importFrom(desk.path(u"list.json"_s));
        QVERIFY(seenText(SettingsWindow::sheet(wrong), noImport));
        QVERIFY(!desk.store->error()->details.isEmpty());
        QCOMPARE(desk.store->entries(), entries);
        QCOMPARE(desk.platform.userDefaults.values, defaults);
        QCOMPARE(::content(desk.platform.applicationSupport.filePath(u"Corvane/entries.json"_s)),
                 file);
    }

    void refusesAFileThatWouldTakeAllMemory()
    {
        Desk desk;
        write(desk.path(u"list.json"_s), QByteArray(15 * 1024 * 1024, '['));
        desk.importFrom(desk.path(u"list.json"_s));
        QVERIFY(seenText(SettingsWindow::sheet(wrong), noImport));
    }

    void refusesAHugeFile()
    {
        Desk desk;
        QFile file(desk.path(u"huge.json"_s));
        QVERIFY(file.open(QFile::WriteOnly) && file.resize(200'000'000));
        desk.importFrom(file.fileName());
        QVERIFY(seenText(SettingsWindow::sheet(wrong), noImport));
        QVERIFY(desk.store->error()->details.contains(u"16"_s));
    }

    void keepsTheFormerMessageWhenAFileIsRefused()
    {
        Desk desk;
        write(desk.path(u"good.json"_s), exportOf(0));
        write(desk.path(u"bad.json"_s), "bad");
        desk.importFrom(desk.path(u"good.json"_s));
        QTRY_VERIFY(desk.shows(u"Imported 0 shortcuts."_s));
        desk.importFrom(desk.path(u"bad.json"_s));
        SettingsWindow::sheet(wrong);
        SettingsWindow::clickInSheet(u"OK"_s);
        QVERIFY(desk.shows(u"Imported 0 shortcuts."_s));
    }

    void doesNothingWhenAPanelIsCancelled_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("title");
        QTest::newRow("for an import") << u"Import…"_s << u"Import"_s;
        QTest::newRow("for an export") << u"Export…"_s << u"Export"_s;
    }
    void doesNothingWhenAPanelIsCancelled()
    {
        QFETCH(const QString, button);
        QFETCH(const QString, title);
        Desk desk({website(u"News"_s)});
        const auto entries = desk.store->entries();
        desk.click(button);
        desk.panel(title).reject();
        QTRY_VERIFY(sheets().isEmpty());
        QCOMPARE(desk.store->entries(), entries);
        QVERIFY(!desk.store->error());
        desk.click(button);
        desk.panel(title).reject();
    }

    void staysOpenForAFileThatIsNotThere()
    {
        Desk desk;
        desk.importFrom(desk.path(u"nowhere.json"_s));
        QTRY_VERIFY(Desk::question());
        QCOMPARE(Desk::question()->text(), u"That item could not be found."_s);
        Desk::question()->accept();
        QCOMPARE(sheetTitles(), QStringList(u"Import"_s));
    }

    void offersJsonFilesOnly()
    {
        Desk desk({website(u"News"_s)});
        const QMap<QString, QString> confirmingButtons{{u"Import"_s, u"Open"_s},
                                                       {u"Export"_s, u"Save"_s}};
        for (const auto &[title, button] : confirmingButtons.asKeyValueRange()) {
            desk.click(title + u'…');
            QFileDialog &panel = desk.panel(title);
            QCOMPARE(panel.nameFilters(), QStringList(u"JSON files (*.json)"_s));
            QVERIFY(seenButton(panel, button));
            panel.reject();
            QTRY_VERIFY(sheets().isEmpty());
        }
    }

    void leavesAnotherPanelAlone()
    {
        Desk desk({website(u"News"_s)});
        desk.click(u"Import…"_s);
        QFileDialog &panel = desk.panel(u"Import"_s);
        auto *const field = panel.findChild<QLineEdit *>();
        field->setText(u"/typed"_s);
        // As assistive programs can, past the panel.
        qobject_cast<QPushButton *>(seenButton(*desk.view, u"Export…"_s))->click();
        settle();
        QCOMPARE(sheetTitles(), QStringList(u"Import"_s));
        QCOMPARE(field->text(), u"/typed"_s);
    }

    void waitsWithAnErrorUntilThePanelIsClosed()
    {
        Desk desk;
        desk.click(u"Import…"_s);
        QFileDialog &panel = desk.panel(u"Import"_s);
        desk.store->report(u"Meanwhile."_s, Error{u"why"_s});
        settle();
        QCOMPARE(sheetTitles(), QStringList(u"Import"_s));
        panel.reject();
        QVERIFY(seenText(SettingsWindow::sheet(wrong), u"Meanwhile."_s));
    }

    void exportsTheList()
    {
        Desk desk({website(u"News"_s)});
        desk.setKeys(desk.store->entries().constFirst(), {45, 256});
        desk.exportTo(desk.path(u"list.json"_s));
        QTRY_VERIFY(sheets().isEmpty());
        QCOMPARE(content(desk.path(u"list.json"_s)), desk.store->exportData());
        QVERIFY(!desk.store->error());
    }

    void proposesAName()
    {
        Desk desk({website(u"News"_s)});
        desk.click(u"Export…"_s);
        QFileDialog &panel = desk.panel(u"Export"_s);
        QCOMPARE(panel.findChild<QLineEdit *>()->text(), u"Corvane.json"_s);
        QCOMPARE(panel.findChild<QLineEdit *>()->selectedText(), u"Corvane"_s);
    }

    void completesTheName_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("written");
        QTest::newRow("without an extension") << u"list"_s << u"list.json"_s;
        QTest::newRow("with another one") << u"list.v2"_s << u"list.v2.json"_s;
        QTest::newRow("with it") << u"list.json"_s << u"list.json"_s;
        QTest::newRow("with it in capitals") << u"LIST.JSON"_s << u"LIST.JSON"_s;
    }
    void completesTheName()
    {
        QFETCH(const QString, typed);
        QFETCH(const QString, written);
        Desk desk({website(u"News"_s)});
        desk.exportTo(desk.path(typed));
        QTRY_COMPARE(QDir(desk.folder.path()).entryList(QDir::Files), QStringList(written));
    }

    void opensAFolderInsteadOfWritingToIt()
    {
        Desk desk({website(u"News"_s)});
        QVERIFY(QDir(desk.folder.path()).mkdir(u"sub"_s));
        desk.exportTo(desk.path(u"sub"_s));
        QFileDialog &panel = desk.panel(u"Export"_s);
        QCOMPARE(panel.directory().path(), desk.path(u"sub"_s));
        QVERIFY(QDir(desk.path(u"sub"_s)).isEmpty());
    }

    void asksBeforeItReplacesAFile_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<bool>("isReplaced");
        QTest::newRow("and does it") << u"list.json"_s << u"Replace"_s << true;
        QTest::newRow("also one whose name it completes") << u"list"_s << u"Replace"_s << true;
        QTest::newRow("or does not") << u"list.json"_s << u"Cancel"_s << false;
    }
    void asksBeforeItReplacesAFile()
    {
        QFETCH(const QString, typed);
        QFETCH(const QString, answer);
        QFETCH(const bool, isReplaced);
        Desk desk({website(u"News"_s)});
        const QString path = desk.path(u"list.json"_s);
        write(path, "precious");
        desk.exportTo(desk.path(typed));
        QTRY_VERIFY(Desk::question());
        QCOMPARE(Desk::question()->text(),
                 u"“list.json” already exists. Do you want to replace it?"_s);
        QCOMPARE(content(path), QByteArray("precious"));
        QTest::mouseClick(seenButton(*Desk::question(), answer), Qt::LeftButton);
        QTRY_VERIFY(!Desk::question());
        QCOMPARE(content(path), isReplaced ? desk.store->exportData() : QByteArray("precious"));
        QTRY_COMPARE(sheets().isEmpty(), isReplaced);
    }

    void replacesNoFileByAReturnTooMany()
    {
        Desk desk({website(u"News"_s)});
        const QString path = desk.path(u"list.json"_s);
        write(path, "precious");
        desk.exportTo(path);
        QTRY_VERIFY(Desk::question() && Desk::question()->isActiveWindow());
        QTest::keyClick(Desk::question()->focusWidget(), Qt::Key_Return);
        QTRY_VERIFY(!Desk::question());
        QCOMPARE(content(path), QByteArray("precious"));
    }

    void tellsWhenTheListCannotBeWritten()
    {
        Desk desk({website(u"News"_s)});
        desk.exportTo(u"/proc/list.json"_s);
        QVERIFY(seenText(SettingsWindow::sheet(wrong), noExport));
        QVERIFY(!desk.store->error()->details.isEmpty());
    }

    void leavesTheFileAsItWasWhenTheDiskIsFull()
    {
        Desk desk({website(u"a long name "_s.repeated(50))});
        const QString path = desk.path(u"list.json"_s);
        write(path, "precious");
        desk.exportTo(path);
        QTRY_VERIFY(Desk::question());
        withLittleSpace(
            [] { QTest::mouseClick(seenButton(*Desk::question(), u"Replace"_s), Qt::LeftButton); });
        QVERIFY(seenText(SettingsWindow::sheet(wrong), noExport));
        QCOMPARE(content(path), QByteArray("precious"));
        QCOMPARE(QDir(desk.folder.path()).entryList(QDir::Files), QStringList(u"list.json"_s));
    }
};

QTEST_MAIN(ListFilesTest)
#include "ListFilesTest.moc"
