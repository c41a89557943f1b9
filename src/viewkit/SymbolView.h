// A widget that shows one of the program's drawings in the colour of text.
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
    /// The last rendering; it is valid for m_color and for its own device pixel ratio.
    QPixmap m_image;
    QColor m_color;
};

} // namespace viewkit
