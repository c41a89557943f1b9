#include "settings/ApplicationPanel.h"
#include "fakes/FakeInstalledApplications.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPixmap>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace
{
InstalledApplication app(const QString &name, const QStringList &keywords = {},
                         const QString &icon = {})
{
    return {u"/apps/"_s + name + u".desktop"_s, name, icon, keywords};
}

const QList<InstalledApplication> someApps{
    app(u"Café Finder"_s, {u"Espresso"_s}),
    app(u"Files"_s, {u"File Manager"_s, u"folder"_s}),
    app(u"Maps"_s, {u"Find the way"_s}),
    app(u"Firefox"_s, {u"Web Browser"_s}),
};

QString file(const QTemporaryDir &folder, const QString &name,
             QFile::Permissions permissions = QFile::ReadOwner | QFile::WriteOwner)
{
    QFile written(folder.filePath(name));
    written.open(QFile::WriteOnly);
    written.setPermissions(permissions);
    return written.fileName();
}

/// A panel on the screen, and what it gave on.
struct Shown {
    explicit Shown(const QList<InstalledApplication> &installed = someApps)
        : applications(fake(installed))
    {
        panel.open();
        QVERIFY(QTest::qWaitForWindowActive(&panel));
    }

    static FakeInstalledApplications fake(const QList<InstalledApplication> &installed)
    {
        FakeInstalledApplications fake;
        fake.applications = installed;
        return fake;
    }

    FakeInstalledApplications applications;
    QStringList chosen;
    ApplicationPanel panel{applications, [this](const QString &path) { chosen << path; }, nullptr};
    QLineEdit &search = *panel.findChild<QLineEdit *>();
    QListView &list = *panel.findChild<QListView *>();

    QPushButton &button(const QString &label) const
    {
        for (auto *const button : panel.findChildren<QPushButton *>()) {
            if (button->text() == label)
                return *button;
        }
        qFatal("no button %s", qPrintable(label));
    }
    QFileDialog *filePanel() const { return panel.findChild<QFileDialog *>(); }
    bool shows(const QString &text) const
    {
        const auto labels = panel.findChildren<QLabel *>();
        return std::any_of(labels.begin(), labels.end(), [&text](const QLabel *label) {
            return label->text() == text && label->isVisible();
        });
    }

    QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < list.model()->rowCount(); ++row)
            names << list.model()->index(row, 0).data().toString();
        return names;
    }
    /// Empty if there is none.
    QString selectedName() const
    {
        const auto indexes = list.selectionModel()->selectedIndexes();
        return indexes.isEmpty() ? QString() : indexes.constFirst().data().toString();
    }
    /// The file panel, with this file chosen in it.
    void browseFor(const QString &path)
    {
        button(u"Browse…"_s).click();
        filePanel()->selectFile(path);
        QTRY_COMPARE(filePanel()->selectedFiles(), QStringList(path));
        filePanel()->findChild<QDialogButtonBox *>()->buttons().constFirst()->click();
    }
};
} // namespace

class ApplicationPanelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsAllApplicationsInTheirOrder()
    {
        const Shown shown;
        QCOMPARE(shown.names(),
                 QStringList({u"Café Finder"_s, u"Files"_s, u"Maps"_s, u"Firefox"_s}));
    }

    void beginsInTheSearchFieldWithNothingSelected()
    {
        const Shown shown;
        QVERIFY(shown.search.hasFocus());
        QCOMPARE(shown.selectedName(), QString());
        QVERIFY(!shown.button(u"Choose App"_s).isEnabled());
        QCOMPARE(shown.panel.windowTitle(), u"Choose App"_s);
        QCOMPARE(shown.panel.windowModality(), Qt::WindowModal);
    }

    void namesItsPartsToScreenReaders()
    {
        const Shown shown;
        QCOMPARE(shown.search.accessibleName(), u"Search"_s);
        QCOMPARE(shown.list.accessibleName(), u"Apps"_s);
    }

    void findsByEveryTypedWord_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("found");
        const auto add = [](const char *row, const QString &typed, const QStringList &found) {
            QTest::newRow(row) << typed << found;
        };
        add("names that begin with the text come first", u"fi"_s,
            {u"Files"_s, u"Firefox"_s, u"Café Finder"_s, u"Maps"_s});
        add("case does not matter", u"FIREFOX"_s, {u"Firefox"_s});
        add("accents that are not typed do not matter", u"cafe"_s, {u"Café Finder"_s});
        add("accents that are typed do not matter", u"Fírefox"_s, {u"Firefox"_s});
        add("keywords count", u"browser"_s, {u"Firefox"_s});
        add("words in any order, in names and keywords", u"espresso caf"_s, {u"Café Finder"_s});
        add("every word has to be there", u"files browser"_s, {});
        add("blanks around do not matter", u"  maps "_s, {u"Maps"_s});
        add("a word does not reach from one keyword into the next", u"managerfolder"_s, {});
    }
    void findsByEveryTypedWord()
    {
        QFETCH(const QString, typed);
        const Shown shown;
        shown.search.setText(typed);
        QTEST(shown.names(), "found");
    }

    void selectsTheFirstMatchWhileSomethingIsTyped()
    {
        const Shown shown;
        QTest::keyClicks(&shown.search, u"fi"_s);
        QCOMPARE(shown.selectedName(), u"Files"_s);
        QVERIFY(shown.button(u"Choose App"_s).isEnabled());
        QTest::keyClicks(&shown.search, u"r"_s);
        QCOMPARE(shown.selectedName(), u"Firefox"_s);
        shown.search.clear();
        QCOMPARE(shown.selectedName(), QString());
        QVERIFY(!shown.button(u"Choose App"_s).isEnabled());
        shown.search.setText(u" "_s);
        QCOMPARE(shown.selectedName(), QString());
    }

    void movesTheSelectionFromTheSearchField()
    {
        const Shown shown;
        const auto selectedAfter = [&shown](Qt::Key key) {
            QTest::keyClick(&shown.search, key);
            return shown.selectedName();
        };
        QCOMPARE(selectedAfter(Qt::Key_Down), u"Café Finder"_s);
        QCOMPARE(selectedAfter(Qt::Key_Down), u"Files"_s);
        QCOMPARE(selectedAfter(Qt::Key_PageDown), u"Firefox"_s);
        QCOMPARE(selectedAfter(Qt::Key_Up), u"Maps"_s);
        QCOMPARE(selectedAfter(Qt::Key_PageUp), u"Café Finder"_s);
        QVERIFY(shown.search.hasFocus());
    }

    void choosesWithReturnWhereverTheFocusIs_data()
    {
        QTest::addColumn<QString>("focus");
        QTest::newRow("in the search field") << u"search"_s;
        QTest::newRow("in the list") << u"list"_s;
        QTest::newRow("on Browse") << u"Browse…"_s;
        QTest::newRow("on Cancel") << u"Cancel"_s;
        QTest::newRow("on Choose App") << u"Choose App"_s;
    }
    void choosesWithReturnWhereverTheFocusIs()
    {
        QFETCH(const QString, focus);
        const Shown shown;
        shown.search.setText(u"maps"_s);
        QWidget *const place = focus == u"search" ? static_cast<QWidget *>(&shown.search)
            : focus == u"list"                    ? static_cast<QWidget *>(&shown.list)
                                                  : &shown.button(focus);
        place->setFocus();
        QTest::keyClick(place, Qt::Key_Return);
        QCOMPARE(shown.chosen, QStringList(u"/apps/Maps.desktop"_s));
        QVERIFY(!shown.panel.isVisible());
    }

    void doesNothingOnReturnWhileNothingIsSelected()
    {
        const Shown shown;
        QTest::keyClick(&shown.search, Qt::Key_Return);
        QCOMPARE(shown.chosen, QStringList());
        QVERIFY(shown.panel.isVisible());
    }

    void choosesWithADoubleClick()
    {
        const Shown shown;
        const QPoint place = shown.list.visualRect(shown.list.model()->index(1, 0)).center();
        QTest::mouseClick(shown.list.viewport(), Qt::LeftButton, {}, place);
        QVERIFY(shown.button(u"Choose App"_s).isEnabled());
        QCOMPARE(shown.chosen, QStringList());
        QTest::mouseDClick(shown.list.viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(shown.chosen, QStringList(u"/apps/Files.desktop"_s));
        QVERIFY(!shown.panel.isVisible());
    }

    void choosesWithItsButton()
    {
        const Shown shown;
        shown.search.setText(u"maps"_s);
        shown.button(u"Choose App"_s).click();
        QCOMPARE(shown.chosen, QStringList(u"/apps/Maps.desktop"_s));
    }

    void choosesNothingWhenItIsCancelled_data()
    {
        QTest::addColumn<std::function<void(const Shown &)>>("cancel");
        const auto add = [](const char *row, const std::function<void(const Shown &)> &cancel) {
            QTest::newRow(row) << cancel;
        };
        add("by Cancel", [](const Shown &shown) { shown.button(u"Cancel"_s).click(); });
        add("by Escape in the search field",
            [](const Shown &shown) { QTest::keyClick(&shown.search, Qt::Key_Escape); });
        add("by Escape in the list",
            [](const Shown &shown) { QTest::keyClick(&shown.list, Qt::Key_Escape); });
        add("by the close button", [](const Shown &shown) { shown.search.window()->close(); });
    }
    void choosesNothingWhenItIsCancelled()
    {
        QFETCH(const std::function<void(const Shown &)>, cancel);
        const Shown shown;
        const QSignalSpy rejected(&shown.panel, &QDialog::rejected);
        shown.search.setText(u"maps"_s);
        cancel(shown);
        QVERIFY(!shown.panel.isVisible());
        QCOMPARE(rejected.count(), 1);
        QCOMPARE(shown.chosen, QStringList());
    }

    void saysThatNothingIsFound()
    {
        const Shown shown;
        QVERIFY(!shown.shows(u"No apps found"_s));
        shown.search.setText(u"xyz"_s);
        QVERIFY(shown.shows(u"No apps found"_s));
        QVERIFY(!shown.button(u"Choose App"_s).isEnabled());
        shown.search.clear();
        QVERIFY(!shown.shows(u"No apps found"_s));
    }

    void saysThatNothingIsInstalled()
    {
        const Shown shown{QList<InstalledApplication>()};
        QVERIFY(shown.shows(u"No apps found"_s));
    }

    void showsTheIconOfAnApplication()
    {
        const QTemporaryDir folder;
        QPixmap red(24, 24);
        red.fill(Qt::red);
        QVERIFY(red.save(folder.filePath(u"red.png"_s)));
        const Shown shown({app(u"Red"_s, {}, folder.filePath(u"red.png"_s)), app(u"None"_s),
                           app(u"Lost"_s, {}, folder.filePath(u"lost.png"_s))});
        const auto image = [&shown](int row) {
            const auto icon = shown.list.model()->index(row, 0).data(Qt::DecorationRole);
            return icon.value<QIcon>().pixmap({24, 24}, 1).toImage();
        };
        QCOMPARE(image(0).pixelColor(12, 12), QColor(Qt::red));
        QCOMPARE(image(1).size(), QSize(24, 24));
        QCOMPARE(image(2), image(1));
    }

    void readsTheIconOfARowOnlyWhenItIsInSight()
    {
        const QTemporaryDir folder;
        const QString icon = folder.filePath(u"red.png"_s);
        Shown shown(QList<InstalledApplication>(100, app(u"Red"_s, {}, icon)));
        QVERIFY(!shown.panel.grab().isNull());
        QPixmap red(24, 24);
        red.fill(Qt::red);
        QVERIFY(red.save(icon));
        const auto isRed = [&shown](int row) {
            const auto seen = shown.list.model()->index(row, 0).data(Qt::DecorationRole);
            return seen.value<QIcon>().pixmap({24, 24}, 1).toImage().pixelColor(12, 12) == Qt::red;
        };
        QVERIFY(!isRed(0));
        QVERIFY(isRed(99));
    }

    void showsANameOfAnyLengthOnOneLineWithoutScrolling()
    {
        const Shown shown({app(QString(300, u'x')), app(u"two\nlines"_s)});
        const QRect first = shown.list.visualRect(shown.list.model()->index(0, 0));
        const QRect second = shown.list.visualRect(shown.list.model()->index(1, 0));
        QCOMPARE(first.width(), shown.list.viewport()->width());
        QCOMPARE(second.height(), first.height());
        QCOMPARE(shown.names().constLast(), u"two lines"_s);
    }

    void givesOnTheFileThatIsBrowsedFor_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("permissions");
        const int readable = QFile::ReadOwner;
        QTest::newRow("a program") << u"program"_s << (readable | QFile::ExeOwner);
        QTest::newRow("a .desktop file") << u"known.desktop"_s << readable;
    }
    void givesOnTheFileThatIsBrowsedFor()
    {
        QFETCH(const QString, name);
        QFETCH(const int, permissions);
        const QTemporaryDir folder;
        const QString path = file(folder, name, QFile::Permissions(permissions));
        Shown shown({{.path = folder.filePath(u"known.desktop"_s), .name = u"Known"_s}});
        shown.browseFor(path);
        QCOMPARE(shown.chosen, QStringList(path));
        QVERIFY(!shown.panel.isVisible());
    }

    void staysOpenForAFileThatIsNoApp_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("permissions");
        const int readable = QFile::ReadOwner;
        QTest::newRow("a document") << u"letter.txt"_s << readable;
        QTest::newRow("a malformed .desktop file") << u"bad.desktop"_s << readable;
        QTest::newRow("a malformed .desktop file that is executable")
            << u"bad.desktop"_s << (readable | QFile::ExeOwner);
    }
    void staysOpenForAFileThatIsNoApp()
    {
        QFETCH(const QString, name);
        QFETCH(const int, permissions);
        const QTemporaryDir folder;
        const QString path = file(folder, name, QFile::Permissions(permissions));
        Shown shown;
        QVERIFY(!shown.shows(u"That file is not an app."_s));
        shown.browseFor(path);
        QVERIFY(shown.shows(u"That file is not an app."_s));
        QCOMPARE(shown.chosen, QStringList());
        QVERIFY(shown.panel.isVisible());
    }

    void takesBackThatAFileIsNoAppWhenTheUserGoesOn_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("by typing") << Qt::Key_M;
        QTest::newRow("by moving the selection") << Qt::Key_Down;
    }
    void takesBackThatAFileIsNoAppWhenTheUserGoesOn()
    {
        QFETCH(const Qt::Key, key);
        const QTemporaryDir folder;
        Shown shown;
        shown.browseFor(file(folder, u"letter.txt"_s));
        QTest::keyClick(&shown.search, key);
        QVERIFY(!shown.shows(u"That file is not an app."_s));
    }

    void comesBackFromAFilePanelThatIsCancelled()
    {
        const Shown shown;
        shown.button(u"Browse…"_s).click();
        const QPointer<QFileDialog> filePanel = shown.filePanel();
        QCOMPARE(filePanel->windowModality(), Qt::WindowModal);
        filePanel->reject();
        QTRY_VERIFY(!filePanel);
        QVERIFY(shown.panel.isVisible());
        QCOMPARE(shown.chosen, QStringList());
    }

    void offersEveryFileInTheFilePanel()
    {
        const Shown shown;
        shown.button(u"Browse…"_s).click();
        const QFileDialog &filePanel = *shown.filePanel();
        QCOMPARE(filePanel.nameFilters(), QStringList({u"All files (*)"_s, u"Apps (*.desktop)"_s}));
        QCOMPARE(filePanel.fileMode(), QFileDialog::ExistingFile);
        QCOMPARE(filePanel.labelText(QFileDialog::Accept), u"Choose App"_s);
    }
};

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication program(argc, argv);
    ApplicationPanelTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ApplicationPanelTest.moc"
