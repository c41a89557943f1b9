#include "settings/EntryRow.h"
#include "support/Seen.h"
#include "support/StoreHome.h"
#include "symbols/SystemSymbol.h"

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
const KeyboardShortcuts::Shortcut commandK{40, 256};
const QString notFound = u"Not found"_s;

LaunchEntry website(const QString &name = u"News"_s)
{
    return {.name = name, .kind = ActionKind::website, .target = u"https://example.org"_s};
}

/// A window with the row of the list's first entry.
struct Window : StoreHome {
    explicit Window(const LaunchEntry &entry, const QList<LaunchEntry> &others = {})
        : StoreHome(QList{entry} + others)
        , row(new EntryRow(
              *store, [this](const LaunchEntry &it) { edited << it.name; },
              [this](const LaunchEntry &it) { deleted << it.name; }, &window))
    {
        auto *const layout = new QVBoxLayout(&window);
        layout->setContentsMargins({});
        layout->addWidget(row);
        layout->addStretch();
        window.resize(560, 200);
        show();
        window.show();
    }

    void show() const { row->setEntry(store->entries().first()); }

    /// With all that it takes on the screen.
    QImage image()
    {
        QCoreApplication::processEvents();
        return window.grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    QRect place(QWidget *part) const { return {part->mapTo(row, QPoint()), part->size()}; }

    QWidget *text(const QString &text) const { return seenText(*row, text); }
    QWidget *edit() const { return seenButton(*row, u"Edit"_s); }
    QWidget *bin() const { return seenButton(*row, u"Delete"_s); }
    QWidget *onOff() const { return seen(*row, QAccessible::CheckBox, u"Enabled"_s); }

    /// The height of a row that shows nothing out of the ordinary.
    static int usualHeight()
    {
        Window window(website());
        QCoreApplication::processEvents();
        return window.row->height();
    }

    QWidget window;
    EntryRow *row;
    QStringList edited;
    QStringList deleted;
};

QColor inkOf(QWidget *text)
{
    return text->palette().color(text->foregroundRole());
}

bool contains(const QImage &image, const QImage &part)
{
    for (int x = 0; x + part.width() <= image.width(); ++x) {
        for (int y = 0; y + part.height() <= image.height(); ++y) {
            if (image.copy(QRect(QPoint(x, y), part.size())) == part)
                return true;
        }
    }
    return false;
}

/// The symbol as it looks on that background.
QImage drawn(const QString &symbol, const QColor &ink, int side, QRgb background)
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(background);
    QPainter(&image).drawPixmap(0, 0, systemSymbol(symbol, ink).pixmap({side, side}, 1));
    return image;
}
} // namespace

class EntryRowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void standsInOneLineFromTheSwitchToTheBin()
    {
        Window window(website());
        QCoreApplication::processEvents();
        const QRect onOff = window.place(window.onOff());
        const QRect name = window.place(window.text(u"News"_s));
        const QRect badge = window.place(window.text(u"No keys"_s));
        const QRect edit = window.place(window.edit());
        const QRect bin = window.place(window.bin());
        // The switch, the symbol of 20 pixels, the name.
        QCOMPARE(name.left(), onOff.right() + 1 + 10 + 20 + 10);
        QVERIFY(badge.left() > name.right());
        QCOMPARE(edit.left(), badge.right() + 1 + 10);
        QCOMPARE(bin.left(), edit.right() + 1 + 10);
        QCOMPARE(bin.right() + 12, window.row->width() - 1);
    }

    void alignsItsPartsAtTheTopWithSpaceAroundThem()
    {
        Window window(website(), {website(u"A"_s), website(u"B"_s), website(u"C"_s)});
        for (const LaunchEntry &entry : window.store->entries())
            window.setKeys(entry, commandK);
        window.show();
        QCoreApplication::processEvents();
        QCOMPARE(window.place(window.onOff()).top(), 3);
        QCOMPARE(window.place(window.edit()).top(), 3);
        // Texts are beside those of the buttons.
        const auto middle = [](const QRect &place) { return (place.top() + place.bottom()) / 2; };
        const int line = middle(window.place(window.edit()));
        QVERIFY(std::abs(middle(window.place(window.text(u"⌘K"_s))) - line) <= 1);
        QVERIFY(std::abs(middle(window.place(window.text(u"News"_s))) - line) <= 1);
        QCOMPARE(window.place(window.bin()).top(), 3);
        QWidget *const last = window.text(u"The same keys are used by “C”."_s);
        QCOMPARE(window.place(last).bottom() + 3, window.row->height() - 1);
    }

    void showsTheNameInBoldAndTheTargetSmallAndPaleBelow()
    {
        Window window(website());
        QCoreApplication::processEvents();
        QWidget *const name = window.text(u"News"_s);
        QWidget *const target = window.text(u"https://example.org"_s);
        QVERIFY(name->font().bold());
        QCOMPARE(name->font().pointSizeF(), QApplication::font().pointSizeF());
        QVERIFY(!target->font().bold());
        QVERIFY(target->font().pointSizeF() < name->font().pointSizeF());
        QVERIFY(inkOf(target) != inkOf(name));
        QCOMPARE(window.place(target).left(), window.place(name).left());
        QCOMPARE(window.place(target).top(), window.place(name).bottom() + 1 + 2);
    }

    void showsTheKindAsASymbol_data()
    {
        QTest::addColumn<ActionKind>("kind");
        QTest::addColumn<QString>("symbol");
        QTest::newRow("app") << ActionKind::app << u"app.badge"_s;
        QTest::newRow("path") << ActionKind::path << u"folder"_s;
        QTest::newRow("website") << ActionKind::website << u"globe"_s;
        QTest::newRow("shortcut") << ActionKind::shortcut << u"square.stack.3d.up"_s;
    }

    void showsTheKindAsASymbol()
    {
        QFETCH(const ActionKind, kind);
        QFETCH(const QString, symbol);
        LaunchEntry entry = website();
        entry.kind = kind;
        Window window(entry);
        const QImage image = window.image();
        const QRect onOff = window.place(window.onOff());
        const QRect name = window.place(window.text(u"News"_s));
        const QImage part = image.copy(QRect(onOff.right() + 11, 0, 20, window.row->height()));
        QCOMPARE(part.width() + 10, name.left() - onOff.right() - 11);
        const QColor ink = color(TextColor::secondary, window.row->palette());
        QVERIFY(contains(part, drawn(symbol, ink, 16, image.pixel(1, 1))));
    }

    void followsAnotherEntry()
    {
        LaunchEntry entry = website();
        Window window(entry);
        entry.name = u"Tools"_s;
        entry.kind = ActionKind::shortcut;
        entry.target = u"Tidy up"_s;
        window.row->setEntry(entry);
        QCOMPARE(nameOf(window.row), u"Tools"_s);
        QCOMPARE(seenTexts(*window.row), QStringList({u"No keys"_s, u"Tools"_s, u"Tidy up"_s}));
    }

    void isPalerWhenItsEntryIsDisabled()
    {
        Window window(website());
        window.setKeys(website(), commandK);
        const QImage enabled = window.image();
        window.store->setEnabled(false, window.store->entries().first().id);
        window.show();
        const QImage disabled = window.image();
        const QColor background = enabled.pixelColor(1, 1);
        const int pastTheSwitch = window.place(window.onOff()).right() + 1;
        int strongest = 0;
        for (int x = pastTheSwitch; x < window.row->width(); ++x) {
            for (int y = 0; y < window.row->height(); ++y) {
                const double before = enabled.pixelColor(x, y).green() - background.green();
                const double after = disabled.pixelColor(x, y).green() - background.green();
                strongest = std::max(strongest, int(std::abs(before)));
                QVERIFY(std::abs(after - 0.55 * before) <= 3);
            }
        }
        QVERIFY(strongest > 150);
    }

    void isWholeAgainWhenItsEntryIsEnabledAgain()
    {
        Window window(website());
        const QUuid id = window.store->entries().first().id;
        const QImage before = window.image();
        for (const bool isOn : {false, true}) {
            window.store->setEnabled(isOn, id);
            window.show();
        }
        QCOMPARE(window.image(), before);
    }

    void canBeUsedWhileItsEntryIsDisabled()
    {
        LaunchEntry entry = website();
        entry.isEnabled = false;
        Window window(entry);
        QTest::mouseClick(window.edit(), Qt::LeftButton);
        QTest::mouseClick(window.bin(), Qt::LeftButton);
        QTest::mouseClick(window.onOff(), Qt::LeftButton);
        QCOMPARE(window.edited, QStringList({u"News"_s}));
        QCOMPARE(window.deleted, QStringList({u"News"_s}));
        QVERIFY(window.store->entries().first().isEnabled);
    }

    void showsThatATargetIsGone_data()
    {
        QTest::addColumn<ActionKind>("kind");
        QTest::addColumn<QString>("target");
        QTest::addColumn<bool>("isShown");
        QTest::newRow("an app that is gone") << ActionKind::app << u"/none/App.desktop"_s << true;
        QTest::newRow("a path that is gone") << ActionKind::path << u"/none"_s << true;
        QTest::newRow("an app that is there") << ActionKind::app << u"/bin/sh"_s << false;
        QTest::newRow("a folder that is there") << ActionKind::path << u"/"_s << false;
        QTest::newRow("never of a website") << ActionKind::website << u"/none"_s << false;
        QTest::newRow("never of a shortcut") << ActionKind::shortcut << u"/none"_s << false;
    }

    void showsThatATargetIsGone()
    {
        QFETCH(const ActionKind, kind);
        QFETCH(const QString, target);
        QFETCH(const bool, isShown);
        Window window({.name = u"Thing"_s, .kind = kind, .target = target});
        QCOMPARE(window.text(notFound) != nullptr, isShown);
    }

    void showsNotFoundBesideTheNameInSmallBoldRed()
    {
        Window window({.name = u"Thing"_s, .kind = ActionKind::app, .target = u"/none"_s});
        QCoreApplication::processEvents();
        QWidget *const name = window.text(u"Thing"_s);
        QWidget *const mark = window.text(notFound);
        QVERIFY(mark->font().bold());
        QVERIFY(mark->font().pointSizeF() < name->font().pointSizeF());
        QVERIFY(inkOf(mark).hslHue() < 15 || inkOf(mark).hslHue() > 345);
        QVERIFY(window.place(mark).left() > window.place(name).right());
        QVERIFY(std::abs(window.place(mark).center().y() - window.place(name).center().y()) <= 1);
    }

    void noticesThatAFileHasGoneAndComeBack()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"file"_s);
        Window window({.name = u"Thing"_s, .kind = ActionKind::path, .target = path});
        QVERIFY(window.text(notFound));
        QVERIFY(QFile(path).open(QFile::WriteOnly));
        window.show();
        QVERIFY(!window.text(notFound));
        QFile::remove(path);
        window.show();
        QVERIFY(window.text(notFound));
    }

    /// Only the middle is missing.
    void shortensALongTargetInTheMiddle()
    {
        const auto image = [](const QString &first, const QString &middle, const QString &last) {
            LaunchEntry entry = website();
            entry.target =
                u"https://"_s + first + QString(200, u'x') + middle + QString(200, u'x') + last;
            Window window(entry);
            return window.image();
        };
        const QImage shown = image(u"ab"_s, u"cd"_s, u"ef"_s);
        QCOMPARE(image(u"ab"_s, u"yz"_s, u"ef"_s), shown);
        QVERIFY(image(u"yz"_s, u"cd"_s, u"ef"_s) != shown);
        QVERIFY(image(u"ab"_s, u"cd"_s, u"yz"_s) != shown);
    }

    void keepsAnyTextOnOneLineAndItsControlsInSight_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("target");
        const QString words = u"many words with spaces "_s.repeated(40);
        QTest::newRow("a long target") << u"News"_s << words;
        QTest::newRow("a long name") << words << u"/none"_s;
        QTest::newRow("a long name without spaces") << QString(500, u'x') << u"/none"_s;
        QTest::newRow("a long name from right to left")
            << u"مرحبا بالعالم "_s.repeated(40) << u"/none"_s;
        QTest::newRow("line breaks in the name") << u"one\ntwo\r\nthree\u2028four"_s << u"/none"_s;
        QTest::newRow("line breaks in the target") << u"News"_s << u"/none\n/two\n/three"_s;
        QTest::newRow("what looks like markup") << u"<h1>News</h1><br>x"_s << u"<h1>x</h1>"_s;
        QTest::newRow("no name") << u""_s << u"/none"_s;
        QTest::newRow("no target") << u"News"_s << u""_s;
    }

    void keepsAnyTextOnOneLineAndItsControlsInSight()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, target);
        Window window({.name = name, .kind = ActionKind::path, .target = target});
        QCoreApplication::processEvents();
        QCOMPARE(window.window.width(), 560);
        // Some scripts are a little higher than others.
        QVERIFY(window.row->height() < Window::usualHeight() + 8);
        QCOMPARE(window.place(window.bin()).right() + 12, window.row->width() - 1);
        QWidget *const mark = window.text(notFound);
        QVERIFY(mark);
        QVERIFY(mark->width() >= mark->sizeHint().width());
        QVERIFY(window.place(mark).right() < window.place(window.text(u"No keys"_s)).left());
    }

    void beginsATextFromRightToLeftWhereTheOthersBegin()
    {
        LaunchEntry entry = website();
        entry.target = u"שלום"_s;
        Window window(entry);
        const QImage image = window.image();
        const QRect target = window.place(window.text(entry.target));
        QVERIFY(target.width() > 200);
        const QRect start(target.topLeft(), QSize(20, target.height()));
        QImage blank = image.copy(start);
        blank.fill(image.pixel(1, 1));
        QVERIFY(image.copy(start) != blank);
    }

    void showsEachWarningOnALineOfItsOwnBelowTheTarget()
    {
        Window window(website(), {website(u"Mail"_s), website(u"Music"_s)});
        window.platform.symbolicHotkeys.hotkeys = {{40, 0x100000, true}};
        for (const LaunchEntry &entry : window.store->entries())
            window.setKeys(entry, commandK);
        window.show();
        QCoreApplication::processEvents();
        const QStringList warnings = window.store->warnings(
            window.store->entries().first().shortcutName(), window.store->entries().first().id);
        QCOMPARE(warnings.size(), 3);
        QCOMPARE(seenTexts(*window.row),
                 QStringList({u"⌘K"_s, u"News"_s, u"https://example.org"_s}) + warnings);
        int edge = window.place(window.text(u"https://example.org"_s)).bottom();
        for (const QString &warning : warnings) {
            const QRect line = window.place(window.text(warning));
            QCOMPARE(line.top(), edge + 1 + 2);
            edge = line.bottom();
        }
    }

    void showsWarningsInOrangeAfterASignOfTheSameColour()
    {
        Window window(website(), {website(u"Mail"_s)});
        for (const LaunchEntry &entry : window.store->entries())
            window.setKeys(entry, commandK);
        window.show();
        const QImage image = window.image();
        QWidget *const warning = window.text(u"The same keys are used by “Mail”."_s);
        const QColor ink = inkOf(warning);
        QVERIFY(ink.hslHue() >= 15 && ink.hslHue() <= 45);
        QCOMPARE(warning->font().pointSizeF(),
                 window.text(u"https://example.org"_s)->font().pointSizeF());
        const int left = window.place(window.text(u"News"_s)).left();
        const QRect line = window.place(warning);
        const QImage sign = image.copy(QRect(left, line.top(), line.left() - left, line.height()));
        QVERIFY(contains(sign,
                         drawn(u"exclamationmark.triangle.fill"_s, ink,
                               QFontMetrics(warning->font()).height(), image.pixel(1, 1))));
    }

    void losesItsWarningsAgain()
    {
        Window window(website(), {website(u"Mail"_s)});
        for (const LaunchEntry &entry : window.store->entries())
            window.setKeys(entry, commandK);
        window.show();
        window.store->deleteEntry(window.store->entries().last());
        window.show();
        QCoreApplication::processEvents();
        QVERIFY(!window.text(u"The same keys are used by “Mail”."_s));
        QCOMPARE(window.row->height(), Window::usualHeight());
    }

    void showsItsKeysOnARoundedPlate()
    {
        Window window(website());
        window.setKeys(window.store->entries().first(), commandK);
        window.show();
        const QImage image = window.image();
        QWidget *const badge = window.text(u"⌘K"_s);
        QVERIFY(badge);
        const QRect place = window.place(badge);
        QCOMPARE(badge->size(),
                 badge->fontMetrics().size(0, u"⌘K"_s).grownBy(QMargins(8, 2, 8, 2)));
        const QRgb background = image.pixel(1, 1);
        QCOMPARE(image.pixel(place.topLeft()), background);
        QCOMPARE(image.pixel(place.bottomRight()), background);
        const QColor plate = image.pixelColor(place.center().x(), place.top() + 1);
        const QColor ink = color(TextColor::secondary, badge->palette());
        const auto expected = QColor(background).green() * 0.85 + ink.green() * 0.15;
        QVERIFY(std::abs(plate.green() - expected) <= 2);
    }

    void saysThatThereAreNoKeys()
    {
        Window window(website());
        QVERIFY(window.text(u"No keys"_s));
    }

    void enablesAndDisablesItsEntry()
    {
        Window window(website());
        QTest::mouseClick(window.onOff(), Qt::LeftButton);
        QVERIFY(!window.store->entries().first().isEnabled);
        QTest::keyClick(window.onOff(), Qt::Key_Space);
        QVERIFY(window.store->entries().first().isEnabled);
    }

    void showsWhetherItsEntryIsEnabled()
    {
        Window window(website());
        const auto isOn = [&] {
            return bool(QAccessible::queryAccessibleInterface(window.onOff())->state().checked);
        };
        QVERIFY(isOn());
        window.store->setEnabled(false, window.store->entries().first().id);
        window.show();
        QVERIFY(!isOn());
        QVERIFY(!window.store->entries().first().isEnabled);
    }

    void isAListItemWithTheNameOfItsEntry()
    {
        Window window(website());
        QCOMPARE(roleOf(window.row), QAccessible::ListItem);
        QCOMPARE(nameOf(window.row), u"News"_s);
    }

    void explainsTheBin()
    {
        Window window(website());
        QCOMPARE(window.bin()->toolTip(), u"Delete"_s);
        QVERIFY(static_cast<QPushButton *>(window.bin())->text().isEmpty());
        const QImage image = window.image();
        const QRect bin = window.place(window.bin());
        int reddish = 0;
        for (int x = bin.left(); x <= bin.right(); ++x) {
            for (int y = bin.top(); y <= bin.bottom(); ++y)
                reddish += image.pixelColor(x, y).red() > image.pixelColor(x, y).green() + 80;
        }
        QVERIFY(reddish > 10);
    }

    void takesNoNoticeOfThePause()
    {
        Window window(website());
        const QImage before = window.image();
        window.store->setPaused(true);
        window.show();
        QCOMPARE(window.image(), before);
    }

    void dimsTheKeysWhereTheyCannotBeRegistered()
    {
        Window window(website());
        window.setKeys(window.store->entries().first(), commandK);
        window.show();
        QVERIFY(window.text(u"⌘K"_s)->isEnabled());
        const QImage before = window.image();
        window.platform.hotkeys.setReach(HotkeyReach::nowhere);
        window.show();
        QVERIFY(!window.text(u"⌘K"_s)->isEnabled());
        QVERIFY(window.image() != before);
    }

    void tellsWhichKeysTheDesktopUsesInstead()
    {
        Window window(website());
        window.setKeys(window.store->entries().first(), commandK);
        window.platform.hotkeys.setOtherKeys(40, {41, 256});
        window.show();
        QVERIFY(window.text(u"Your desktop uses ⌘; for this."_s));
    }
};

QTEST_MAIN(EntryRowTest)
#include "EntryRowTest.moc"
