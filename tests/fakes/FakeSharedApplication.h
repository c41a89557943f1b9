// A running program that is only said to come to the front or to end.
#pragma once

#include "platform/SharedApplication.h"

#include <QList>
#include <QString>
#include <QUuid>

class FakeSharedApplication : public SharedApplication
{
public:
    void activate(QWidget &window) override { activated.append(&window); }
    void activateAfterDrop(QWidget &window) override { droppedOn.append(&window); }
    QString fireCommand(const QUuid &entry) const override
    {
        return QStringLiteral("fire ") + entry.toString();
    }
    void terminate() override { ++terminations; }

    QList<QWidget *> activated;
    QList<QWidget *> droppedOn;
    int terminations = 0;
};
