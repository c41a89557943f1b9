// The settings view on the screen, over a store on fakes.
#pragma once

#include "settings/SettingsView.h"
#include "support/Seen.h"
#include "support/StoreHome.h"

#include <QApplication>
#include <QTest>

/// Lets happen what was put off, and what that puts off in turn.
inline void settle()
{
    for (int turn = 0; turn < 5; ++turn)
        QCoreApplication::processEvents();
}

/// The sheets on the screen.
inline QList<QWidget *> sheets()
{
    QList<QWidget *> found;
    for (QWidget *const window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->isModal())
            found << window;
    }
    return found;
}

inline QStringList sheetTitles()
{
    QStringList titles;
    for (const QWidget *const sheet : sheets())
        titles << sheet->windowTitle();
    return titles;
}

struct SettingsWindow : StoreHome {
    /// Of a user who knows the program, unless the values say something else.
    explicit SettingsWindow(
        const QList<LaunchEntry> &entries = {},
        const QHash<QString, QVariant> &defaults = {{QStringLiteral("hasSeenWelcome"), true}})
        : StoreHome(entries)
    {
        platform.userDefaults.values.insert(defaults);
        view.emplace(platform.services, *store);
        view->show();
        if (!QTest::qWaitForWindowActive(&*view))
            qFatal("the window did not become active");
    }

    static LaunchEntry website(const QString &name)
    {
        return {.name = name,
                .kind = ActionKind::website,
                .target = QStringLiteral("https://example.org")};
    }

    /// By the mouse, the first button of that name.
    void click(const QString &button)
    {
        QTest::mouseClick(seenButton(*view, button), Qt::LeftButton);
        settle();
    }

    /// The one sheet, once it is there.
    static QWidget &sheet(const QString &title)
    {
        [&] { QTRY_COMPARE(sheetTitles(), QStringList(title)); }();
        return *sheets().constFirst();
    }

    /// Of the one sheet.
    static void clickInSheet(const QString &button)
    {
        QTest::mouseClick(seenButton(*sheets().constFirst(), button), Qt::LeftButton);
        settle();
    }

    bool shows(const QString &text) { return seenText(*view, text) != nullptr; }

    QWidget *checkBox(const QString &name) { return seen(*view, QAccessible::CheckBox, name); }
    bool isChecked(const QString &name)
    {
        return QAccessible::queryAccessibleInterface(checkBox(name))->state().checked;
    }

    /// None before the entries and the defaults are there.
    std::optional<SettingsView> view;
};
