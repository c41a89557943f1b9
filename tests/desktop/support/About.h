// What the program tells about itself.
#pragma once

#include "support/Accessible.h"

#include <QTest>

/// How the program registers key combinations, as the sheet About says it. The program must have
/// been started as accessible, and its window be open.
inline QString wayInAbout(const Accessible &windows)
{
    const Accessible about = windows.await(QStringLiteral("push button"), QStringLiteral("About"));
    const auto isOpen = [&] { return about.press(); };
    [&] { QVERIFY(QTest::qWaitFor(isOpen)); }();
    const QString title = QStringLiteral("Key combinations: ");
    QString way;
    const auto isTold = [&] {
        for (const Accessible &label : windows.findAll(QStringLiteral("label"))) {
            if (label.name().startsWith(title))
                way = label.name().section(u'\n', 0, 0).sliced(title.size());
        }
        return !way.isEmpty();
    };
    [&] { QVERIFY(QTest::qWaitFor(isTold)); }();
    return way;
}
