// A rounded rectangle in a pale accent colour, with something on it.
#pragma once

#include <QWidget>

namespace viewkit
{

class Card : public QWidget
{
    Q_OBJECT

public:
    /// The content becomes its own.
    explicit Card(QWidget *content);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace viewkit
