// A running program that is only said to come to the front or to end.
#pragma once

#include "platform/SharedApplication.h"

#include <QList>

class FakeSharedApplication : public SharedApplication
{
public:
    void activate(QWidget &window) override { activated.append(&window); }
    void terminate() override { ++terminations; }

    QList<QWidget *> activated;
    int terminations = 0;
};
