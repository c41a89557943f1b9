// One of our drawings on the screen, in the colour of texts.
#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>
#include <QWidget>

namespace viewkit
{

class SymbolView : public QWidget
{
    Q_OBJECT

public:
    SymbolView();

    /// In device-independent pixels.
    void setSide(int side);

    void setSymbol(const QString &name);

    QSize sizeHint() const override { return {m_side, m_side}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_side = 0;
    QString m_name;
    /// What was drawn last, and in which colour and for which pixels.
    QPixmap m_image;
    QColor m_color;
};

} // namespace viewkit
