// A rounded rectangle in a pale accent colour, with content on it.
#pragma once

#include <QWidget>

namespace viewkit
{

class Card : public QWidget
{
    Q_OBJECT

public:
    /// Takes ownership of the content.
    explicit Card(QWidget *content);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace viewkit
