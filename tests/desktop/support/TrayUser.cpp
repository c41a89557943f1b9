#include "support/TrayUser.h"

#include "support/Panel.h"

#include <QSet>
#include <QTest>
#include <algorithm>

namespace
{
/// Where the pointer changes nothing.
constexpr QPoint elsewhere(1000, 700);

/// Distances from the upper and the lower edge at which every panel's menu has these items.
constexpr int firstItem = 14;
constexpr int secondItem = 37;
constexpr int lastItem = 14;

/// What of the panel differs from the panel's empty end.
QRect whatIsIn(const QImage &panel)
{
    const int end = panel.width() - 1;
    QRect place;
    for (int y = 0; y < panel.height(); ++y) {
        // A panel may be framed.
        for (int x = 1; x < end; ++x) {
            if (panel.pixel(x, y) != panel.pixel(end - 10, y))
                place |= QRect(x, y, 1, 1);
        }
    }
    return place;
}

/// Whether that is about square, of the size of an icon, and more than an empty place for one.
bool isIcon(const QImage &picture)
{
    const int shorter = std::min(picture.width(), picture.height());
    const int longer = std::max(picture.width(), picture.height());
    return shorter >= 14 && longer <= 40 && longer - shorter <= 2 && contrast(picture) > 30;
}

/// Whether something is written in the lower half. In the upper one, a menu that is not drawn yet
/// may show the icon below it.
bool hasText(const QImage &image)
{
    // As many as the smooth edges of letters have.
    constexpr int shades = 8;
    QSet<QRgb> colors;
    for (int y = image.height() / 2; y < image.height(); ++y) {
        for (int x = 0; x < image.width() && colors.size() < shades; ++x)
            colors.insert(image.pixel(x, y));
    }
    return colors.size() == shades;
}
} // namespace

TrayUser::TrayUser()
{
    mouse.moveTo(elsewhere);
}

std::optional<QRect> TrayUser::icon() const
{
    const QImage panel = screen.picture({0, 0, screen.geometry().width(), Panel::height});
    const QRect place = whatIsIn(panel);
    return isIcon(panel.copy(place)) ? std::optional(place) : std::nullopt;
}

std::optional<QRect> TrayUser::menu() const
{
    for (const QRect &window : screen.windows()) {
        const QRect place = window & screen.geometry();
        // Notifications are far from the icon. Who draws the menu has the keyboard and the pointer.
        if (place.height() > 2 * Panel::height && place.left() < 100
            && hasText(screen.picture(place)))
            return place;
    }
    return {};
}

QRect TrayUser::awaitIcon() const
{
    // Looks no second time: panels may flicker.
    std::optional<QRect> place;
    if (!QTest::qWaitFor([&] { return (place = icon()).has_value(); }))
        QTest::qFail("there is no icon", __FILE__, __LINE__);
    return place.value_or(QRect());
}

QRect TrayUser::openMenu(Qt::MouseButton button)
{
    // A click is in vain while a panel shows an icon but has not got its menu yet, which may be so
    // for some milliseconds. Nobody is as quick but us.
    for (int i = 0; i < 3; ++i) {
        mouse.moveTo(elsewhere);
        mouse.click(awaitIcon().center(), button);
        std::optional<QRect> place;
        if (QTest::qWaitFor([&] { return (place = menu()).has_value(); }, 5000))
            return place.value_or(QRect());
    }
    QTest::qFail("no menu opens", __FILE__, __LINE__);
    return {};
}

void TrayUser::clickFirstItem()
{
    clickMenu(firstItem);
}

void TrayUser::clickSecondItem()
{
    clickMenu(secondItem);
}

void TrayUser::clickLastItem()
{
    clickMenu(-lastItem);
}

void TrayUser::clickMenu(int distance)
{
    const QRect place = menu().value_or(QRect());
    const int edge = distance > 0 ? place.top() : place.bottom();
    mouse.click({place.center().x(), edge + distance});
}
