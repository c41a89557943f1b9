// Nothing that is written is cut off, and no two things lie upon each other: in every view, with
// names of any length and direction, with large fonts, and as small as windows can be made.

#include "settings/NewScriptForm.h"
#include "support/SettingsWindow.h"
#include "viewkit/ShortenedLabel.h"

#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTemporaryDir>
#include <functional>

using namespace Qt::StringLiterals;
using namespace viewkit;
using KeyboardShortcuts::Shortcut;

namespace
{
constexpr Shortcut allModifiersF12{111, 0x1B00};

bool isCut(const QLabel &label)
{
    if (label.wordWrap())
        return label.width() < label.minimumSizeHint().width()
            || label.height() < label.heightForWidth(label.width());
    return label.width() < label.sizeHint().width() || label.height() < label.sizeHint().height();
}

bool isCut(const QWidget &part)
{
    if (const auto *const shortened = qobject_cast<const ShortenedLabel *>(&part))
        return shortened->width() < shortened->minimumSizeHint().width()
            || shortened->height() < shortened->sizeHint().height();
    if (const auto *const label = qobject_cast<const QLabel *>(&part))
        return isCut(*label);
    if (qobject_cast<const QAbstractButton *>(&part))
        return part.width() < part.sizeHint().width() || part.height() < part.sizeHint().height();
    if (qobject_cast<const QLineEdit *>(&part) || qobject_cast<const QComboBox *>(&part))
        return part.height() < part.sizeHint().height();
    return false;
}

QString described(QWidget &part)
{
    return QString::fromLatin1(part.metaObject()->className()) + u" “"_s + nameOf(&part) + u'”';
}

/// Without what is meant to lie upon others.
QList<QWidget *> visibleChildren(const QWidget &parent)
{
    QList<QWidget *> found;
    for (QObject *const child : parent.children()) {
        if (auto *const part = qobject_cast<QWidget *>(child); part && part->isVisible()
            && !part->isWindow() && !part->testAttribute(Qt::WA_TransparentForMouseEvents))
            found << part;
    }
    return found;
}

/// Of what a layout has placed there, and of what is in that.
QStringList flaws(const QWidget &parent)
{
    QStringList found;
    const QList<QWidget *> parts = visibleChildren(parent);
    for (qsizetype index = 0; index < parts.size(); ++index) {
        QWidget &part = *parts.at(index);
        if (isCut(part))
            found << described(part) + u" is cut"_s;
        if (parent.layout() && !parent.rect().contains(part.geometry()))
            found << described(part) + u" sticks out"_s;
        for (QWidget *const other : parts.sliced(index + 1)) {
            if (part.geometry().intersects(other->geometry()))
                found << described(part) + u" lies upon "_s + described(*other);
        }
        found << flaws(part);
    }
    return found;
}

QList<LaunchEntry> everything()
{
    const QString longName = u"The minutes of the meetings of the whole year, all of them "_s;
    const QString rightToLeft = u"مكتبة الصور والملاحظات"_s;
    return {
        {.name = u"a"_s, .kind = ActionKind::shortcut, .target = u"b"_s},
        {.name = longName.repeated(5),
         .kind = ActionKind::app,
         .target = u"/nowhere/"_s.repeated(40)},
        {.name = rightToLeft, .kind = ActionKind::path, .target = u"/"_s},
        {.name = rightToLeft.repeated(9),
         .kind = ActionKind::website,
         .target = u"https://example.org/"_s + u"long"_s.repeated(90)},
        {.name = u"two\nlines"_s, .kind = ActionKind::website, .isEnabled = false},
        {.name = u"W"_s.repeated(200), .kind = ActionKind::website},
    };
}

/// All parts of the window that are not always there are there.
struct Window : SettingsWindow {
    explicit Window(const QList<LaunchEntry> &entries = everything())
        : SettingsWindow(entries, {})
    {
        platform.loginItem.current = LoginItemStatus::requiresApproval;
        for (const LaunchEntry &entry : entries)
            setKeys(entry, allModifiersF12);
        store->announceChange();
        view->hide();
        view->show();
        settle();
    }

    void edit(const QString &name)
    {
        QWidget *const row = seen(*view, QAccessible::ListItem, name);
        QTest::mouseClick(seenButton(*row, u"Edit"_s), Qt::LeftButton);
        settle();
    }
};

using Open = std::function<QWidget *(Window &window)>;
} // namespace

Q_DECLARE_METATYPE(Open)

class LayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<double>("fontSize");
        QTest::newRow("with the usual font") << 1.;
        QTest::newRow("with a large font") << 1.5;
        QTest::newRow("with a huge font") << 2.;
    }
    void init()
    {
        QFETCH_GLOBAL(const double, fontSize);
        QFont font = m_font;
        font.setPointSizeF(font.pointSizeF() * fontSize);
        QApplication::setFont(font);
    }
    void cleanupTestCase() { QApplication::setFont(m_font); }

    void cutsNothingInTheWindow_data()
    {
        QTest::addColumn<QList<LaunchEntry>>("entries");
        QTest::addColumn<QSize>("size");
        QTest::newRow("with a list") << everything() << QSize(620, 900);
        QTest::newRow("with a list, as small as can be") << everything() << QSize(1, 1);
        QTest::newRow("with a list, very wide") << everything() << QSize(2000, 700);
        QTest::newRow("without a list") << QList<LaunchEntry>() << QSize(620, 900);
        QTest::newRow("without a list, as small as can be") << QList<LaunchEntry>() << QSize(1, 1);
    }
    void cutsNothingInTheWindow()
    {
        QFETCH(const QList<LaunchEntry>, entries);
        QFETCH(const QSize, size);
        Window window(entries);
        window.view->resize(size.expandedTo(window.view->minimumSize()));
        settle();
        QCOMPARE(flaws(*window.view), QStringList());
    }

    void cutsNothingInSheets_data()
    {
        QTest::addColumn<Open>("open");
        const auto click = [](const QString &button, const QString &title) {
            return Open([=](Window &window) {
                window.click(button);
                return &SettingsWindow::sheet(title);
            });
        };
        QTest::newRow("a new entry") << click(u"Add"_s, u"New shortcut"_s);
        QTest::newRow("a new entry that is not complete") << Open([](Window &window) {
            window.click(u"Add"_s);
            SettingsWindow::clickInSheet(u"Add"_s);
            return sheets().constFirst();
        });
        QTest::newRow("an entry with warnings") << Open([](Window &window) {
            window.edit(u"a"_s);
            return sheets().constFirst();
        });
        QTest::newRow("while keys are recorded") << Open([](Window &window) {
            window.click(u"Add"_s);
            SettingsWindow::clickInSheet(u"Record Shortcut"_s);
            return sheets().constFirst();
        });
        QTest::newRow("the apps") << Open([](Window &window) {
            window.click(u"Add"_s);
            SettingsWindow::clickInSheet(u"Choose…"_s);
            return sheets().constLast();
        });
        QTest::newRow("a new script with a message") << Open([](Window &window) {
            window.edit(u"a"_s);
            SettingsWindow::clickInSheet(u"New…"_s);
            auto *const form = window.view->findChild<NewScriptForm *>();
            window.platform.shortcutLibrary.error = Error{u"Why it cannot be made. "_s.repeated(9)};
            QTest::mouseClick(seenButton(*form, u"Create"_s), Qt::LeftButton);
            return form->window();
        });
        QTest::newRow("About") << click(u"About"_s, u"Corvane"_s);
        QTest::newRow("the question before a reset")
            << click(u"Reset all shortcuts…"_s, u"Remove the keys from every shortcut?"_s);
        QTest::newRow("an error") << Open([](Window &window) {
            window.store->report(u"A message of some length that tells what went wrong."_s, {});
            return &SettingsWindow::sheet(u"Something went wrong"_s);
        });
        QTest::newRow("the details of an error") << Open([](Window &window) {
            window.store->report(u"Wrong"_s, {.description = u"word "_s.repeated(200)});
            SettingsWindow::sheet(u"Something went wrong"_s);
            SettingsWindow::clickInSheet(u"Show Details"_s);
            return &SettingsWindow::sheet(u"Details"_s);
        });
    }
    void cutsNothingInSheets()
    {
        QFETCH(const Open, open);
        Window window;
        QWidget &sheet = *open(window);
        settle();
        const QStringList found = flaws(sheet);
        QVERIFY2(found.isEmpty(), qPrintable(found.join(u", "_s)));
    }

    void keepsSheetsAtTheirWidth_data()
    {
        QTest::addColumn<Open>("open");
        QTest::addColumn<int>("width");
        QTest::newRow("an editor with warnings that quote a name without blanks")
            << Open([](Window &window) {
                   window.edit(u"a"_s);
                   return sheets().constFirst();
               })
            << 460;
        QTest::newRow("an editor that was given keys which cannot be recorded")
            << Open([](Window &window) {
                   window.edit(u"a"_s);
                   SettingsWindow::clickInSheet(allModifiersF12.description());
                   window.platform.eventMonitor.press(40, shiftEventFlag);
                   return sheets().constFirst();
               })
            << 460;
        QTest::newRow("an editor with a message") << Open([](Window &window) {
            window.click(u"Add"_s);
            SettingsWindow::clickInSheet(u"Add"_s);
            return sheets().constFirst();
        }) << 460;
        QTest::newRow("an error that quotes a name without blanks") << Open([](Window &window) {
            window.store->report(u"“%1” could not be read."_s.arg(u"W"_s.repeated(200)), {});
            return &SettingsWindow::sheet(u"Something went wrong"_s);
        }) << 400;
    }
    void keepsSheetsAtTheirWidth()
    {
        QFETCH(const Open, open);
        QFETCH(const int, width);
        Window window;
        // A scroll bar of a high sheet lies beside it.
        const QWidget *const content = open(window)->findChild<QScrollArea *>()->widget();
        settle();
        QCOMPARE(content->width(), width);
    }

private:
    const QFont m_font = QApplication::font();
};

QTEST_MAIN(LayoutTest)
#include "LayoutTest.moc"
