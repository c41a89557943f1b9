// The layout that is in use on a running KWin, which has one layout at first.

#include "platform/KeyModifier.h"
#include "platform/linux/layout/PlasmaCodes.h"
#include "platform/linux/layout/WaylandKeyboardLayout.h"
#include "support/PlasmaSettings.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr VirtualKey keyY{16};
constexpr int controlY = int(Qt::ControlModifier) | Qt::Key_Y;
constexpr int controlZ = int(Qt::ControlModifier) | Qt::Key_Z;

void awaitService(bool isThere)
{
    auto *const bus = QDBusConnection::sessionBus().interface();
    QTRY_COMPARE(bus->isServiceRegistered(u"org.kde.keyboard"_s).value(), isThere);
}

struct Layout : WaylandKeyboardLayout {
    Layout()
        : WaylandKeyboardLayout(std::make_unique<PlasmaLayout>())
    {
        start();
    }
    QList<int> controlAndY() const
    {
        return plasmaCodes(symbols(), keyY, controlKey, PlasmaVersion::five);
    }
};
} // namespace

class PlasmaLayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isTheOnlyOne()
    {
        Layout layout;
        QTRY_COMPARE(layout.controlAndY(), QList<int>{controlY});
    }

    void isFollowed()
    {
        Layout layout;
        QTRY_COMPARE(layout.controlAndY(), QList<int>{controlY});
        setLayouts("us,de,ru");
        awaitService(true);
        const QSignalSpy changes(&layout, &KeyboardLayout::symbolsChanged);
        switchToLayout(1);
        QTRY_COMPARE(layout.controlAndY(), QList<int>{controlZ});
        QCOMPARE(layout.labels().label(qint64(keyY)), u"Z"_s);
        switchToLayout(2);
        QTRY_COMPARE(layout.controlAndY(), QList<int>{controlY});
        QCOMPARE(changes.size(), 2);
    }

    void isKnownToALateStart()
    {
        setLayouts("us,de");
        awaitService(true);
        switchToLayout(1);
        Layout layout;
        QTRY_COMPARE(layout.controlAndY(), QList<int>{controlZ});
    }

    void isFollowedWhenTheListChanges()
    {
        setLayouts("us,de");
        awaitService(true);
        switchToLayout(0);
        Layout layout;
        QTRY_COMPARE(layout.controlAndY(), QList<int>{controlY});
        setLayouts("de,us");
        QTRY_COMPARE(layout.controlAndY(), QList<int>{controlZ});
        setLayouts("us");
        QTRY_COMPARE(layout.controlAndY(), QList<int>{controlY});
        setLayouts("de");
        QTRY_COMPARE(layout.controlAndY(), QList<int>{controlZ});
    }

    void knowsHowKeysRepeat()
    {
        Layout layout;
        // What KWin has by default; the usual delay is shorter.
        QTRY_COMPARE(layout.keyRepeat().delay.count(), 660);
        QCOMPARE(layout.keyRepeat().interval.count(), 40);
    }
};

QTEST_GUILESS_MAIN(PlasmaLayoutTest)
#include "PlasmaLayoutTest.moc"
