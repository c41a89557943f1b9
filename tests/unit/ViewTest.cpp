#include "viewkit/View.h"
#include "support/Contrast.h"
#include "support/Seen.h"
#include "viewkit/DarkPalette.h"
#include "viewkit/Sheet.h"
#include "viewkit/SymbolView.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QStyleFactory>
#include <QTest>
#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
class Window : public View
{
public:
    explicit Window(const Item &body)
    {
        setBody(body);
        resize(400, 300);
    }

    void open()
    {
        show();
        QVERIFY(QTest::qWaitForWindowActive(this));
        settle();
    }

    static void settle()
    {
        for (int turn = 0; turn < 3; ++turn) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
};

/// A part without looks whose rule is counted.
Item counted(int &runs)
{
    return widget(new QWidget, [&runs] { ++runs; });
}

TextSource from(const QString &variable)
{
    return [&variable] { return variable; };
}
Predicate from(const bool &variable)
{
    return [&variable] { return variable; };
}
template <typename T>
Binding<T> boundTo(T &variable, int &changes)
{
    return {[&variable] { return variable; },
            [&](const T &value) {
                variable = value;
                ++changes;
            }};
}

/// Notes what makes a part look or stand otherwise.
class Watch : public QObject
{
public:
    explicit Watch(QWidget &window)
    {
        for (QWidget *const part : window.findChildren<QWidget *>())
            part->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        static const QSet<QEvent::Type> changes{
            QEvent::Paint,         QEvent::UpdateRequest, QEvent::FontChange, QEvent::PaletteChange,
            QEvent::LayoutRequest, QEvent::Show,          QEvent::Hide,       QEvent::EnabledChange,
            QEvent::ToolTipChange, QEvent::Resize,        QEvent::Move};
        if (changes.contains(event->type()))
            seen << event->type();
        return false;
    }

    QList<QEvent::Type> seen;
};

QPalette palette(const QColor &window, const QColor &base, const QColor &text)
{
    QPalette palette(QColor(Qt::gray), window);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, base);
    return palette;
}

const QPalette light =
    std::unique_ptr<QStyle>(QStyleFactory::create(u"Fusion"_s))->standardPalette();
const QPalette dark = darkPalette();
const QPalette bluishDark =
    palette(QColor(0x2a, 0x2e, 0x32), QColor(0x1b, 0x1e, 0x20), QColor(0xfc, 0xfc, 0xfc));

/// The palette of all applications, for as long as the guard lives.
auto withPalette(const QPalette &wanted)
{
    QApplication::setPalette(wanted);
    return qScopeGuard([] { QApplication::setPalette(light); });
}
auto withFont(const QFont &wanted)
{
    const QFont before = QApplication::font();
    QApplication::setFont(wanted);
    return qScopeGuard([before] { QApplication::setFont(before); });
}

bool showsColor(QWidget &part, const QColor &color)
{
    const QImage image = part.grab().toImage();
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixelColor(x, y) == color)
                return true;
        }
    }
    return false;
}

/// A window whose sheet is there while isOpen.
struct SheetHome {
    explicit SheetHome()
        : window(Column{button(u"Below"_s, [] {}),
                        sheetWhen(&window, from(isOpen), [this](QWidget *owner) {
                            ++sheets;
                            auto *const content = new Window(Column{
                                padding(20),
                                textField(u"Name"_s, u"Name"_s, boundTo(name, changes)),
                                shownWhen([this] { return !message.isEmpty(); },
                                          paragraph(TextStyle::body, from(message))),
                                button(u"Other"_s, [this] { ++others; }),
                                defaultButton(u"Save"_s, [this] { ++saves; }),
                            });
                            content->setMinimumWidth(300);
                            form = content;
                            sheet = new Sheet(
                                u"Title"_s, content, [this] { ++cancels; }, owner);
                            return sheet;
                        })})
    {
        window.open();
    }

    void set(bool shown)
    {
        isOpen = shown;
        window.refresh();
        Window::settle();
    }

    bool isOpen = false;
    int sheets = 0;
    int cancels = 0;
    int saves = 0;
    int others = 0;
    QString name;
    int changes = 0;
    QString message;
    QPointer<Window> form;
    QPointer<QDialog> sheet;
    Window window;
};
} // namespace

class ViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setPalette(light); }

    void refreshesOnceForAllChangesUntilThen()
    {
        int one = 0;
        int other = 0;
        Window window(Column{counted(one), Row{counted(other)}});
        window.open();
        one = other = 0;
        for (int count = 0; count < 50; ++count)
            window.invalidate();
        QCOMPARE(one, 0);
        Window::settle();
        QCOMPARE(one, 1);
        QCOMPARE(other, 1);
    }

    void refreshesForEachChangeOfAnotherTurn()
    {
        int runs = 0;
        Window window(counted(runs));
        window.open();
        runs = 0;
        for (int count = 0; count < 3; ++count) {
            window.invalidate();
            Window::settle();
        }
        QCOMPARE(runs, 3);
    }

    void doesNotRefreshAgainWhatWasRefreshedMeanwhile()
    {
        int runs = 0;
        Window window(counted(runs));
        window.open();
        runs = 0;
        window.invalidate();
        window.refresh();
        Window::settle();
        QCOMPARE(runs, 1);
    }

    void waitsUntilItIsShown()
    {
        int runs = 0;
        Window window(counted(runs));
        window.open();
        window.hide();
        runs = 0;
        for (int count = 0; count < 3; ++count) {
            window.invalidate();
            Window::settle();
        }
        QCOMPARE(runs, 0);
        window.show();
        QCOMPARE(runs, 1);
        Window::settle();
        QCOMPARE(runs, 1);
    }

    void waitsWhenItIsHiddenBeforeItsTurn()
    {
        int runs = 0;
        Window window(counted(runs));
        window.open();
        runs = 0;
        window.invalidate();
        window.hide();
        Window::settle();
        QCOMPARE(runs, 0);
        window.show();
        QCOMPARE(runs, 1);
    }

    void leavesATextAloneThatIsHalfTyped()
    {
        QString typed;
        int changes = 0;
        Window window(
            Column{textField(u"Name"_s, {}, boundTo(typed, changes)), button(u"OK"_s, [] {})});
        window.open();
        auto *const field =
            qobject_cast<QLineEdit *>(seen(window, QAccessible::EditableText, u"Name"_s));
        field->setFocus();
        QTest::keyClicks(field, u"half typed"_s);
        QCOMPARE(typed, u"half typed"_s);
        field->setSelection(2, 3);
        window.refresh();
        QCOMPARE(field->text(), u"half typed"_s);
        QCOMPARE(field->cursorPosition(), 5);
        QCOMPARE(field->selectedText(), u"lf "_s);
        QCOMPARE(window.focusWidget(), field);
        QVERIFY(field->isUndoAvailable());
    }

    void hearsOfTextsThatAssistiveProgramsSet()
    {
        QString typed;
        int changes = 0;
        Window window(textField(u"Name"_s, {}, boundTo(typed, changes)));
        window.open();
        QWidget *const field = seen(window, QAccessible::EditableText, u"Name"_s);
        QAccessible::queryAccessibleInterface(field)->setText(QAccessible::Value, u"set"_s);
        QCOMPARE(typed, u"set"_s);
    }

    void changesNothingWhereNothingHasChanged()
    {
        QString typed = u"text"_s;
        bool isOn = true;
        int chosen = 1;
        int changes = 0;
        const auto yes = [] { return true; };
        const auto no = [] { return false; };
        const auto words = [] { return u"words"_s; };
        const auto warning = [](const QString &line) {
            return tinted(TextColor::warning, paragraph(TextStyle::caption, line));
        };
        Window window(Column{
            padding(5),
            text(TextStyle::title2, words),
            tinted(TextColor::secondary, paragraph(TextStyle::body, words)),
            tinted(TextColor::error, shortenedText(TextStyle::caption, words)),
            forEachText(
                2,
                [] {
                    return QStringList{u"one"_s, u"two"_s};
                },
                warning),
            forEachText(
                2, [] { return QStringList(); }, warning),
            tinted(TextColor::secondary, symbol([] { return u"folder"_s; }, 16)),
            button(words, [] {}),
            button(u"Add"_s, u"plus"_s, [] {}),
            destructiveButton(u"trash"_s, u"Delete"_s, [] {}),
            destructiveButton(u"Remove"_s, [] {}),
            toggle(u"On"_s, boundTo(isOn, changes)),
            checkBox(u"Also on"_s, boundTo(isOn, changes)),
            textField(u"Name"_s, {}, boundTo(typed, changes)),
            picker(u"Kind"_s, {u"A"_s, u"B"_s}, boundTo(chosen, changes)),
            card(Column{padding(5), text(TextStyle::headline, words)}),
            styled(TextStyle::caption, button(u"Small"_s, [] {})),
            announced(text(TextStyle::body, words)),
            scrolledText(u"Details"_s, TextStyle::captionMonospaced, 50, u"words"_s),
            shownWhen(yes, text(TextStyle::body, words)),
            shownWhen(no, text(TextStyle::body, words)),
            enabledWhen(no, button(u"Off"_s, [] {})),
        });
        window.open();
        // The cursor of a text field blinks.
        QVERIFY(!window.focusWidget() || !qobject_cast<QLineEdit *>(window.focusWidget()));
        changes = 0;
        Watch watch(window);
        window.refresh();
        Window::settle();
        QCOMPARE(watch.seen, QList<QEvent::Type>());
        QCOMPARE(changes, 0);
    }

    void bringsEachPartInLine()
    {
        QString words = u"before"_s;
        QString typed = u"old"_s;
        bool isOn = false;
        int chosen = 0;
        int changes = 0;
        Window window(Column{
            text(TextStyle::body, from(words)),
            button(from(words), [] {}),
            toggle(u"On"_s, boundTo(isOn, changes)),
            checkBox(u"Also on"_s, boundTo(isOn, changes)),
            textField(u"Name"_s, {}, boundTo(typed, changes)),
            picker(u"Kind"_s, {u"A"_s, u"B"_s}, boundTo(chosen, changes)),
        });
        window.open();
        words = u"after"_s;
        typed = u"new"_s;
        isOn = true;
        chosen = 1;
        window.refresh();
        QVERIFY(seenText(window, u"after"_s));
        QVERIFY(seenButton(window, u"after"_s));
        for (const QCheckBox *const box : window.findChildren<QCheckBox *>())
            QVERIFY(box->isChecked());
        QCOMPARE(window.findChild<QLineEdit *>()->text(), u"new"_s);
        QCOMPARE(window.findChild<QComboBox *>()->currentText(), u"B"_s);
    }

    void hearsOfWhatTheUserChooses()
    {
        bool isOn = false;
        bool isAlsoOn = false;
        int chosen = 0;
        int changes = 0;
        int presses = 0;
        Window window(Column{
            toggle(u"On"_s, boundTo(isOn, changes)),
            checkBox(u"Also on"_s, boundTo(isAlsoOn, changes)),
            picker(u"Kind"_s, {u"A"_s, u"B"_s}, boundTo(chosen, changes)),
            button(u"Press"_s, [&] { ++presses; }),
        });
        window.open();
        QTest::mouseClick(seen(window, QAccessible::CheckBox, u"On"_s), Qt::LeftButton);
        QTest::keyClick(seen(window, QAccessible::CheckBox, u"Also on"_s), Qt::Key_Space);
        QTest::keyClick(window.findChild<QComboBox *>(), Qt::Key_Down);
        QTest::mouseClick(seenButton(window, u"Press"_s), Qt::LeftButton);
        QVERIFY(isOn && isAlsoOn);
        QCOMPARE(chosen, 1);
        QCOMPARE(changes, 3);
        QCOMPARE(presses, 1);
    }

    void showsAPartOnlyWhileItsConditionHolds()
    {
        bool isShown = false;
        Window window(Column{shownWhen(from(isShown), text(TextStyle::body, u"Sometimes"_s)),
                             text(TextStyle::body, u"Always"_s)});
        window.open();
        for (const bool wanted : {false, true, false}) {
            isShown = wanted;
            window.refresh();
            QCOMPARE(seenText(window, u"Sometimes"_s) != nullptr, wanted);
            QVERIFY(seenText(window, u"Always"_s));
        }
    }

    void enablesAPartOnlyWhileItsConditionHolds()
    {
        bool isEnabled = false;
        Window window(enabledWhen(from(isEnabled), button(u"Export"_s, [] {})));
        window.open();
        for (const bool wanted : {false, true, false}) {
            isEnabled = wanted;
            window.refresh();
            QCOMPARE(seenButton(window, u"Export"_s)->isEnabled(), wanted);
        }
    }

    void showsALineForEachTextInTheirOrder()
    {
        QStringList texts;
        Window window(Column{
            text(TextStyle::body, u"first"_s),
            forEachText(
                2, [&] { return texts; },
                [](const QString &line) { return text(TextStyle::body, line); }),
            text(TextStyle::body, u"last"_s),
        });
        window.open();
        for (const QStringList &wanted :
             {QStringList{}, QStringList{u"b"_s, u"a"_s}, QStringList{u"a"_s, u"b"_s, u"a"_s},
              QStringList{u"c"_s}, QStringList{}, QStringList{u"c"_s}}) {
            texts = wanted;
            window.refresh();
            Window::settle();
            QCOMPARE(seenTexts(window), QStringList(u"first"_s) + wanted + QStringList(u"last"_s));
        }
    }

    void takesNoSpaceForNoLines()
    {
        QStringList texts;
        const auto line = [](const QString &words) { return text(TextStyle::body, words); };
        Window window(Column{
            spacing(10),
            text(TextStyle::body, u"first"_s),
            forEachText(
                2, [&] { return texts; }, line),
            text(TextStyle::body, u"last"_s),
            Spacer{},
        });
        window.open();
        const auto gap = [&] {
            Window::settle();
            const QWidget *const first = seenText(window, u"first"_s);
            return seenText(window, u"last"_s)->y() - first->y() - first->height();
        };
        const int before = gap();
        QCOMPARE(before, 10);
        texts = QStringList{u"a"_s, u"b"_s};
        window.refresh();
        QVERIFY(gap() > before + 20);
        texts.clear();
        window.refresh();
        QCOMPARE(gap(), before);
    }

    void makesLinesAnewOnlyForOtherTexts()
    {
        QStringList texts{u"a"_s, u"b"_s};
        int made = 0;
        Window window(forEachText(
            2, [&] { return texts; },
            [&](const QString &line) {
                ++made;
                return text(TextStyle::body, line);
            }));
        window.open();
        window.refresh();
        QCOMPARE(made, 2);
        texts = QStringList{u"b"_s, u"a"_s};
        window.refresh();
        QCOMPARE(made, 4);
    }

    void isWalkedThroughInTheOrderOfItsDescription()
    {
        // Made before the others.
        auto *const early = new QPushButton(u"3"_s);
        int changes = 0;
        QString typed;
        bool isOn = true;
        int chosen = 0;
        Window window(Column{
            Row{button(u"1"_s, [] {}), Spacer{}, button(u"2"_s, [] {})},
            widget(early),
            Column{Row{toggle(u"4"_s, boundTo(isOn, changes)),
                       textField(u"5"_s, {}, boundTo(typed, changes))}},
            picker(u"6"_s, {u"A"_s}, boundTo(chosen, changes)),
            shownWhen([] { return false; }, button(u"hidden"_s, [] {})),
            destructiveButton(u"trash"_s, u"7"_s, [] {}),
        });
        window.open();
        seenButton(window, u"1"_s)->setFocus();
        QStringList names;
        for (int count = 0; count < 8; ++count) {
            QWidget *const focus = window.focusWidget();
            names << (qobject_cast<QComboBox *>(focus) ? focus->accessibleName() : nameOf(focus));
            QTest::keyClick(focus, Qt::Key_Tab);
        }
        QCOMPARE(names.join(u' '), u"1 2 3 4 5 6 7 1"_s);
    }

    void namesAChoiceAndASymbolForScreenReaders()
    {
        int chosen = 0;
        int changes = 0;
        Window window(Column{picker(u"Action"_s, {u"A"_s}, boundTo(chosen, changes)),
                             destructiveButton(u"trash"_s, u"Delete"_s, [] {})});
        window.open();
        QCOMPARE(window.findChild<QComboBox *>()->accessibleName(), u"Action"_s);
        QVERIFY(seenText(window, u"Action"_s));
        QCOMPARE(seenButton(window, u"Delete"_s)->toolTip(), u"Delete"_s);
    }

    void isATextAndANotificationForScreenReadersWhereItIsAnnounced()
    {
        QString words = u"before"_s;
        Window window(announced(text(TextStyle::body, from(words))));
        window.open();
        const auto notifications = [&window] {
            QStringList names;
            for (QWidget *const one : seenAll(window, QAccessible::Notification))
                names << nameOf(one);
            return names;
        };
        QCOMPARE(notifications(), QStringList(u"before"_s));
        words = u"after"_s;
        window.refresh();
        QCOMPARE(notifications(), QStringList(u"after"_s));
        QVERIFY(seenText(window, words));
    }

    void takesTheColoursOfADarkDesktop()
    {
        Window window(Column{
            text(TextStyle::body, u"plain"_s),
            tinted(TextColor::error, text(TextStyle::body, u"error"_s)),
            tinted(TextColor::secondary, shortenedText(TextStyle::body, [] { return u"pale"_s; })),
            tinted(TextColor::warning, symbol(u"folder"_s, 16)),
            button(u"Add"_s, u"plus"_s, [] {}),
            destructiveButton(u"trash"_s, u"Delete"_s, [] {}),
        });
        window.open();
        const auto shows = [&](const QPalette &palette) {
            const auto icon = [&](const QString &name) {
                const auto *const shown = qobject_cast<QPushButton *>(seenButton(window, name));
                QLabel label;
                label.setPixmap(shown->icon().pixmap(16, 16));
                label.resize(16, 16);
                return label.grab().toImage();
            };
            const auto has = [](const QImage &image, const QColor &ink) {
                for (int x = 0; x < image.width(); ++x) {
                    for (int y = 0; y < image.height(); ++y) {
                        if (image.pixelColor(x, y) == ink)
                            return true;
                    }
                }
                return false;
            };
            const auto ink = [&](const QString &text) {
                const QWidget *const label = seenText(window, text);
                return label->palette().color(label->foregroundRole());
            };
            return QStringList{
                ink(u"plain"_s) == palette.color(QPalette::WindowText) ? u""_s : u"plain"_s,
                ink(u"error"_s) == color(TextColor::error, palette) ? u""_s : u"error"_s,
                ink(u"pale"_s) == color(TextColor::secondary, palette) ? u""_s : u"pale"_s,
                showsColor(*window.findChild<SymbolView *>(), color(TextColor::warning, palette))
                    ? u""_s
                    : u"sign"_s,
                has(icon(u"Add"_s), palette.color(QPalette::ButtonText)) ? u""_s : u"Add"_s,
                has(icon(u"Delete"_s), color(TextColor::error, palette)) ? u""_s : u"Delete"_s,
            }
                .join(u""_s);
        };
        QCOMPARE(shows(light), QString());
        {
            const auto restored = withPalette(dark);
            Window::settle();
            QCOMPARE(shows(dark), QString());
        }
        Window::settle();
        QCOMPARE(shows(light), QString());
    }

    void isAsPaleAsItsWindowWhileThatIsInactive()
    {
        QPalette palette = light;
        palette.setColor(QPalette::Inactive, QPalette::Text, Qt::darkGray);
        const auto restored = withPalette(palette);
        Window window(tinted(TextColor::secondary, text(TextStyle::body, u"pale"_s)));
        const QWidget *const label = window.findChild<QLabel *>();
        const auto shown = [&](QPalette::ColorGroup group) {
            return label->palette().color(group, QPalette::WindowText);
        };
        QCOMPARE(shown(QPalette::Inactive),
                 color(TextColor::secondary, palette, Surface::window, QPalette::Inactive));
        QVERIFY(shown(QPalette::Inactive) != shown(QPalette::Active));
    }

    void writesInLegibleColours_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("on a light desktop") << light;
        QTest::newRow("on a dark desktop") << dark;
        QTest::newRow("on a bluish dark desktop") << bluishDark;
    }

    void writesInLegibleColours()
    {
        QFETCH(const QPalette, palette);
        for (const TextColor textColor :
             {TextColor::secondary, TextColor::warning, TextColor::error}) {
            for (const auto background : {QPalette::Window, QPalette::Base})
                QVERIFY2(contrast(color(textColor, palette), palette.color(background)) >= 4.5,
                         qPrintable(u"text colour %1 on %2: %3"_s.arg(int(textColor))
                                        .arg(background)
                                        .arg(contrast(color(textColor, palette),
                                                      palette.color(background)))));
        }
    }

    void laysAPaleAccentBelowLegibleText_data() { writesInLegibleColours_data(); }
    void laysAPaleAccentBelowLegibleText()
    {
        QFETCH(QPalette, palette);
        palette.setColor(QPalette::Highlight, QColor(0x30, 0x8c, 0xc6));
        const auto restored = withPalette(palette);
        Window window(Column{card(Column{padding(30), text(TextStyle::body, u"words"_s)})});
        window.open();
        const QImage image = window.grab().toImage();
        const QColor back = palette.color(QPalette::Window);
        const QColor ground = image.pixelColor(image.width() / 2, 5);
        const auto share = [](int front, int behind) { return behind + (front - behind) * 0.12; };
        QVERIFY(std::abs(ground.red() - share(0x30, back.red())) <= 1.5);
        QVERIFY(std::abs(ground.green() - share(0x8c, back.green())) <= 1.5);
        QVERIFY(std::abs(ground.blue() - share(0xc6, back.blue())) <= 1.5);
        QVERIFY(contrast(palette.color(QPalette::WindowText), ground) >= 4.5);
        // Its corners are round, by ten pixels.
        QCOMPARE(image.pixelColor(1, 1), back);
        QCOMPARE(image.pixelColor(10, 1), ground);
    }

    void tellsItsColoursApart()
    {
        for (const QPalette &palette : {light, dark}) {
            QVERIFY(color(TextColor::secondary, palette) != palette.color(QPalette::Text));
            QVERIFY(color(TextColor::warning, palette).hslHue() >= 15
                    && color(TextColor::warning, palette).hslHue() <= 45);
            const int red = color(TextColor::error, palette).hslHue();
            QVERIFY(red < 12 || red > 345);
        }
    }

    void writesInSizesRelativeToTheDesktopsOwn_data()
    {
        QTest::addColumn<TextStyle>("style");
        QTest::addColumn<double>("size");
        QTest::addColumn<bool>("isBold");
        QTest::newRow("body") << TextStyle::body << 1. << false;
        QTest::newRow("headline") << TextStyle::headline << 1. << true;
        QTest::newRow("callout") << TextStyle::callout << 12 / 13. << false;
        QTest::newRow("caption") << TextStyle::caption << 11 / 13. << false;
        QTest::newRow("bold caption") << TextStyle::captionBold << 11 / 13. << true;
        QTest::newRow("title of the second level") << TextStyle::title2 << 17 / 13. << true;
        QTest::newRow("title of the third level") << TextStyle::title3 << 15 / 13. << false;
    }

    void writesInSizesRelativeToTheDesktopsOwn()
    {
        QFETCH(const TextStyle, style);
        QFETCH(const double, size);
        QFETCH(const bool, isBold);
        QFont points(QApplication::font().family());
        points.setPointSizeF(13);
        QFont pixels = points;
        pixels.setPixelSize(26);
        {
            const auto restored = withFont(points);
            // Fonts know quarters of a hundredth of a point only.
            QVERIFY(std::abs(font(style).pointSizeF() - 13 * size) < 0.02);
            QCOMPARE(font(style).bold(), isBold);
            QCOMPARE(font(style).family(), points.family());
        }
        const auto restored = withFont(pixels);
        QCOMPARE(font(style).pixelSize(), qRound(26 * size));
    }

    void followsAnotherFont()
    {
        Window window(Column{text(TextStyle::headline, u"headline"_s),
                             shortenedText(TextStyle::caption, [] { return u"caption"_s; }),
                             button(u"Button"_s, [] {}), Spacer{}});
        window.open();
        QWidget *const headline = seenText(window, u"headline"_s);
        const int height = headline->height();
        QFont larger = QApplication::font();
        larger.setPointSizeF(larger.pointSizeF() * 2);
        const auto restored = withFont(larger);
        Window::settle();
        QCOMPARE(headline->font(), font(TextStyle::headline));
        QCOMPARE(seenText(window, u"caption"_s)->font(), font(TextStyle::caption));
        QVERIFY(headline->height() > height * 3 / 2);
    }

    void opensItsSheetOverTheWindow()
    {
        SheetHome home;
        QVERIFY(!home.sheet);
        home.set(true);
        QVERIFY(home.sheet && home.sheet->isVisible());
        QCOMPARE(home.sheet->windowTitle(), u"Title"_s);
        QCOMPARE(home.sheet->windowModality(), Qt::WindowModal);
        QCOMPARE(home.sheet->parentWidget(), &home.window);
        QVERIFY(!(home.sheet->windowFlags() & Qt::WindowMinimizeButtonHint));
        QVERIFY(home.sheet->windowFlags() & Qt::WindowCloseButtonHint);
    }

    void opensItsSheetOnce()
    {
        SheetHome home;
        home.set(true);
        for (int count = 0; count < 5; ++count)
            home.set(true);
        QCOMPARE(home.sheets, 1);
    }

    void destroysItsSheetWhenTheConditionEnds()
    {
        SheetHome home;
        home.set(true);
        home.set(false);
        QVERIFY(!home.sheet);
        home.set(true);
        QCOMPARE(home.sheets, 2);
        QVERIFY(home.sheet->isVisible());
    }

    void opensNoSheetIfTheConditionEndsAtOnce()
    {
        SheetHome home;
        home.isOpen = true;
        home.window.refresh();
        home.isOpen = false;
        home.window.refresh();
        const QPointer<QDialog> sheet = home.sheet;
        QVERIFY(sheet && !sheet->isVisible());
        Window::settle();
        QVERIFY(!QApplication::activeModalWidget());
    }

    void opensASheetOfItsOwnForAnotherSubject()
    {
        std::optional<QString> subject = u"one"_s;
        QStringList made;
        QList<QPointer<QDialog>> dialogs;
        Window window(Column{
            button(u"Below"_s, [] {}),
            sheetFor<QString>(
                &window, [&] { return subject; },
                [&](const QString &about, QWidget *owner) {
                    made << about;
                    auto *const dialog = new Sheet(
                        about, new Window(text(TextStyle::body, about)), [] {}, owner);
                    dialogs << dialog;
                    return dialog;
                }),
        });
        window.open();
        Window::settle();
        window.refresh();
        QCOMPARE(made, QStringList(u"one"_s));
        subject = u"two"_s;
        window.refresh();
        Window::settle();
        QCOMPARE(made, QStringList({u"one"_s, u"two"_s}));
        QVERIFY(!dialogs.at(0) && dialogs.at(1)->isVisible());
        subject.reset();
        window.refresh();
        Window::settle();
        QVERIFY(!dialogs.at(1));
    }

    void leavesItToTheConditionToCloseTheSheet_data()
    {
        using Attempt = std::function<void(QDialog &)>;
        QTest::addColumn<Attempt>("attempt");
        QTest::newRow("by its close button") << Attempt([](QDialog &it) { it.close(); });
        QTest::newRow("by Escape")
            << Attempt([](QDialog &it) { QTest::keyClick(&it, Qt::Key_Escape); });
        QTest::newRow("by Escape in a text field") << Attempt(
            [](QDialog &it) { QTest::keyClick(it.findChild<QLineEdit *>(), Qt::Key_Escape); });
    }

    void leavesItToTheConditionToCloseTheSheet()
    {
        QFETCH(const std::function<void(QDialog &)>, attempt);
        SheetHome home;
        home.set(true);
        attempt(*home.sheet);
        Window::settle();
        QCOMPARE(home.cancels, 1);
        QVERIFY(home.sheet && home.sheet->isVisible());
        home.set(false);
        QCOMPARE(home.cancels, 1);
    }

    void pressesTheDefaultButtonByReturn()
    {
        SheetHome home;
        home.set(true);
        QTest::keyClick(home.sheet->findChild<QLineEdit *>(), Qt::Key_Return);
        QCOMPARE(home.saves, 1);
        seenButton(*home.sheet, u"Other"_s)->setFocus();
        QTest::keyClick(home.sheet->focusWidget(), Qt::Key_Return);
        QCOMPARE(home.saves, 2);
        QCOMPARE(home.others, 0);
        // Also after it has had the focus itself.
        seenButton(*home.sheet, u"Save"_s)->setFocus();
        QTest::keyClick(home.sheet->focusWidget(), Qt::Key_Tab);
        QVERIFY(!seenButton(*home.sheet, u"Save"_s)->hasFocus());
        QTest::keyClick(home.sheet->findChild<QLineEdit *>(), Qt::Key_Return);
        QCOMPARE(home.saves, 3);
    }

    void followsTheDesktopsFontAlsoInsideAnotherView()
    {
        auto *const inner = new Window(Column{
            forEachText(
                0, [] { return QStringList{u"sign"_s}; },
                [](const QString &) { return Row{symbol(u"folder"_s, TextStyle::body)}; }),
            text(TextStyle::title2, u"inner"_s),
        });
        Window outer(Column{widget(inner)});
        outer.open();
        const auto restored = withFont(QFont(QApplication::font().family(), 30));
        Window::settle();
        QCOMPARE(seenText(outer, u"inner"_s)->font(), font(TextStyle::title2));
        QCOMPARE(inner->findChild<SymbolView *>()->sizeHint().height(),
                 QFontMetrics(QApplication::font()).height());
    }

    void answersNothingToAKeyThatIsStillHeldFromBefore_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Escape") << int(Qt::Key_Escape);
        QTest::newRow("Return") << int(Qt::Key_Return);
    }
    void answersNothingToAKeyThatIsStillHeldFromBefore()
    {
        QFETCH(const int, key);
        SheetHome home;
        home.set(true);
        const auto press = [&](bool isRepeat) {
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, isRepeat);
            QCoreApplication::sendEvent(home.sheet->findChild<QLineEdit *>(), &event);
            return home.cancels + home.saves;
        };
        QCOMPARE(press(true), 0);
        QCOMPARE(press(false), 1);
    }

    void scrollsInASheetThatIsHigherThanTheScreen()
    {
        SheetHome home;
        home.message = u"many words "_s.repeated(3000);
        home.set(true);
        const QRect screen = home.sheet->screen()->availableGeometry();
        QVERIFY(home.sheet->frameGeometry().height() < screen.height());
        QWidget *const save = seenButton(*home.sheet, u"Save"_s);
        QVERIFY(home.sheet->mapFromGlobal(save->mapToGlobal(QPoint())).y() > screen.height());
        home.sheet->findChild<QLineEdit *>()->setFocus();
        QTest::keyClick(home.sheet->focusWidget(), Qt::Key_Backtab);
        QVERIFY(save->hasFocus());
        const QRect place(save->mapTo(&*home.sheet, QPoint()), save->size());
        QVERIFY(home.sheet->rect().contains(place));
        // Nothing is hidden behind the scroll bar.
        QVERIFY(home.sheet->width() > home.form->width());
    }

    void takesADoubleClickOnWhatRemovesSomethingForAClick()
    {
        int removals = 0;
        Window window(Column{destructiveButton(u"trash"_s, u"Delete"_s, [&] { ++removals; })});
        window.open();
        QWidget *const button = seenButton(window, u"Delete"_s);
        QTest::mouseClick(button, Qt::LeftButton);
        QTest::mouseDClick(button, Qt::LeftButton);
        QTest::mouseRelease(button, Qt::LeftButton);
        QCOMPARE(removals, 1);
    }

    void choosesNothingWithTheWheel()
    {
        int choice = 0;
        Window window(Column{picker(u"Action"_s, {u"a"_s, u"b"_s},
                                    {
                                        .get = [&] { return choice; },
                                        .set = [&](int index) { choice = index; },
                                    })});
        window.open();
        auto *const box = window.findChild<QComboBox *>();
        QWheelEvent turn(QPointF(5, 5), box->mapToGlobal(QPointF(5, 5)), {}, {0, -120},
                         Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(box, &turn);
        QCOMPARE(choice, 0);
        QCOMPARE(box->currentIndex(), 0);
    }

    void makesTheSheetAsHighAsItsContent()
    {
        SheetHome home;
        home.set(true);
        const QSize before = home.sheet->size();
        home.message = u"many words "_s.repeated(30);
        home.form->refresh();
        Window::settle();
        QWidget *const text = seenText(*home.sheet, home.message);
        QVERIFY(text);
        QVERIFY(text->height() >= text->heightForWidth(text->width()));
        QVERIFY(text->height() > 3 * text->fontMetrics().height());
        QCOMPARE(home.sheet->width(), before.width());
        QVERIFY(home.sheet->height() >= before.height() + text->height());
        home.message.clear();
        home.form->refresh();
        Window::settle();
        QCOMPARE(home.sheet->size(), before);
    }
};

QTEST_MAIN(ViewTest)
#include "ViewTest.moc"
