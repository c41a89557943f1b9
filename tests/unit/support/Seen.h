// Finds the parts of a window as its user does: by what is on the screen, and what a screen reader
// says of it.
#pragma once

#include <QAccessible>
#include <QWidget>
#include <algorithm>

inline QAccessible::Role roleOf(QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(widget)->role();
}

/// An accessible name, or the text of what is not called otherwise.
inline QString nameOf(QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
}

/// All of that role that are not hidden, from top to bottom and then from left to right.
inline QList<QWidget *> seenAll(QWidget &window, QAccessible::Role role)
{
    QList<QWidget *> found;
    for (QWidget *const widget : window.findChildren<QWidget *>()) {
        if (widget->isVisible() && widget->window() == window.window() && roleOf(widget) == role)
            found << widget;
    }
    std::ranges::stable_sort(found, {}, [&window](const QWidget *widget) {
        const QPoint place = widget->mapTo(&window, QPoint());
        return std::pair(place.y(), place.x());
    });
    return found;
}

/// The first of that role and name; null if none is on the screen.
inline QWidget *seen(QWidget &window, QAccessible::Role role, const QString &name)
{
    const auto all = seenAll(window, role);
    const auto found = std::ranges::find(all, name, nameOf);
    return found == all.end() ? nullptr : *found;
}

inline QWidget *seenButton(QWidget &window, const QString &name)
{
    return seen(window, QAccessible::Button, name);
}

inline QWidget *seenText(QWidget &window, const QString &text)
{
    return seen(window, QAccessible::StaticText, text);
}

inline QStringList seenTexts(QWidget &window)
{
    QStringList texts;
    for (QWidget *const label : seenAll(window, QAccessible::StaticText)) {
        if (!nameOf(label).isEmpty())
            texts << nameOf(label);
    }
    return texts;
}
