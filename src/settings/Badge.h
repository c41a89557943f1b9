// A short text on a rounded plate.
#pragma once

#include <QLabel>

class Badge : public QLabel
{
    Q_OBJECT

public:
    Badge();

protected:
    void paintEvent(QPaintEvent *event) override;
};
