// Dropping something on the settings window, as Qt reports it to the view.

#include "settings/DropArea.h"
#include "support/SettingsWindow.h"

#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QUrl folder(u"file:///usr/share"_s);
const QUrl mail(u"mailto:a@example.org"_s);

/// Something that is dragged over the window.
struct Drag {
    Drag(SettingsWindow &settings, const QUrl &address, Qt::DropActions possible = Qt::CopyAction)
        : view(*settings.view)
        , actions(possible)
    {
        data.setUrls({address});
    }

    /// Each tells the action that the window takes it with.
    Qt::DropAction enter() { return send<QDragEnterEvent>(QPoint(9, 9)); }
    Qt::DropAction move() { return send<QDragMoveEvent>(QPoint(9, 9)); }
    Qt::DropAction drop() { return send<QDropEvent>(QPointF(9, 9)); }

    template <typename Event, typename Place>
    Qt::DropAction send(const Place &place)
    {
        Event event(place, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&view, &event);
        return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
    }

    void leave()
    {
        QDragLeaveEvent event;
        QApplication::sendEvent(&view, &event);
    }

    SettingsView &view;
    const Qt::DropActions actions;
    QMimeData data;
};

bool hasRing(SettingsWindow &settings)
{
    return settings.view->findChild<DropArea *>()->isVisible();
}

QString targetField()
{
    return qobject_cast<QLineEdit *>(
               seen(*sheets().constFirst(), QAccessible::EditableText, u"Website"_s))
        ->text();
}
} // namespace

class DropAreaTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensTheFilledEditor()
    {
        SettingsWindow settings;
        Drag drag(settings, QUrl(u"https://example.org/a"_s));
        QVERIFY(!hasRing(settings));
        QCOMPARE(drag.enter(), Qt::CopyAction);
        QCOMPARE(drag.move(), Qt::CopyAction);
        QVERIFY(hasRing(settings));
        QCOMPARE(drag.drop(), Qt::CopyAction);
        QVERIFY(!hasRing(settings));
        SettingsWindow::sheet(u"New shortcut"_s);
        QCOMPARE(targetField(), u"https://example.org/a"_s);
        QCOMPARE(settings.platform.application.droppedOn,
                 QList<QWidget *>{settings.view->window()});
        QVERIFY(settings.store->entries().isEmpty());
    }

    void takesNothingAway_data()
    {
        QTest::addColumn<Qt::DropActions>("possible");
        QTest::addColumn<Qt::DropAction>("taken");
        QTest::newRow("all") << Qt::DropActions(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction)
                             << Qt::LinkAction;
        QTest::newRow("copy or move")
            << Qt::DropActions(Qt::CopyAction | Qt::MoveAction) << Qt::CopyAction;
        QTest::newRow("move") << Qt::DropActions(Qt::MoveAction) << Qt::IgnoreAction;
    }
    void takesNothingAway()
    {
        QFETCH(const Qt::DropActions, possible);
        QFETCH(const Qt::DropAction, taken);
        SettingsWindow settings;
        Drag drag(settings, folder, possible);
        QCOMPARE(drag.enter(), taken);
        QCOMPARE(hasRing(settings), taken != Qt::IgnoreAction);
        QCOMPARE(drag.drop(), taken);
    }

    void refusesWhatNoEntryOpens()
    {
        SettingsWindow settings;
        Drag drag(settings, mail);
        QCOMPARE(drag.enter(), Qt::IgnoreAction);
        QCOMPARE(drag.move(), Qt::IgnoreAction);
        QVERIFY(!hasRing(settings));
        QCOMPARE(drag.drop(), Qt::IgnoreAction);
        settle();
        QCOMPARE(sheetTitles(), QStringList());
        QVERIFY(settings.platform.application.droppedOn.isEmpty());
    }

    void endsWhenItLeaves()
    {
        SettingsWindow settings;
        Drag drag(settings, folder);
        drag.enter();
        drag.leave();
        QVERIFY(!hasRing(settings));
        QCOMPARE(drag.drop(), Qt::IgnoreAction);
        Drag second(settings, mail);
        QCOMPARE(second.enter(), Qt::IgnoreAction);
    }

    void endsWithItsSource()
    {
        SettingsWindow settings;
        Drag drag(settings, folder);
        drag.enter();
        QEnterEvent pointer({9, 9}, {9, 9}, {9, 9});
        QApplication::sendEvent(&*settings.view, &pointer);
        QVERIFY(!hasRing(settings));
        // The pointer may enter between the release of the button and the drop.
        QCOMPARE(drag.drop(), Qt::CopyAction);
    }

    void refusesWhileASheetIsOpen()
    {
        SettingsWindow settings({SettingsWindow::website(u"News"_s)});
        Drag drag(settings, folder);
        QCOMPARE(drag.enter(), Qt::CopyAction);
        // By the keyboard meanwhile.
        settings.click(u"About"_s);
        SettingsWindow::sheet(u"Corvane"_s);
        QCOMPARE(drag.move(), Qt::IgnoreAction);
        QVERIFY(!hasRing(settings));
        QCOMPARE(drag.drop(), Qt::IgnoreAction);
        settle();
        QCOMPARE(sheetTitles(), QStringList(u"Corvane"_s));
        Drag second(settings, folder);
        QCOMPARE(second.enter(), Qt::IgnoreAction);
        QVERIFY(!hasRing(settings));
    }
};

QTEST_MAIN(DropAreaTest)
#include "DropAreaTest.moc"
