#include "symbols/SystemSymbol.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
/// In pixels, like the grids below; the one for sizes without a drawing of their own.
constexpr int commonGrid = 16;
/// Chosen by eye: fainter than the text of disabled controls, and still recognisable in a panel.
constexpr qreal disabledOpacity = 0.4;
constexpr qreal dimmedOpacity = 0.5;

/// The file of the drawing that suits the size. Every symbol is drawn on the common grid, and some
/// also on grids for the sizes at which that drawing looks coarse.
QString drawingFile(const QString &name, int side)
{
    for (const int grid : {32, 24, 22, 20}) {
        const QString file = u":/symbols/%1/%2.svg"_s.arg(grid).arg(name);
        if (side % grid == 0 && QFile::exists(file))
            return file;
    }
    return u":/symbols/%1/%2.svg"_s.arg(commonGrid).arg(name);
}

/// The drawing in the file's own colours; null if there is no such symbol. Results are cached for
/// each size, since reading a file takes far longer than painting, and a list paints its symbols
/// with each scroll step. The few symbols and sizes that a program shows take little memory.
QImage shape(const QString &name, int side)
{
    static QHash<std::pair<QString, int>, QImage> known;
    if (const auto found = known.constFind({name, side}); found != known.cend())
        return *found;
    QImageReader reader(drawingFile(name, side), "svg");
    reader.setScaledSize({side, side});
    const QImage image = reader.read();
    if (image.isNull())
        qWarning("corvane: the symbol \"%s\" cannot be drawn: %s", qPrintable(name),
                 qPrintable(reader.errorString()));
    else
        known.insert({name, side}, image);
    return image;
}

QImage drawing(const QString &name, const QColor &color, int side)
{
    QImage image = shape(name, side);
    if (image.isNull())
        return {};
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

struct Layer {
    QString symbol;
    QColor color;
};

/// Renders the layers at exactly the requested size, the last one on top.
class SymbolEngine : public QIconEngine
{
public:
    SymbolEngine(QList<Layer> layers, qreal opacity)
        : m_layers(std::move(layers))
        , m_opacity(opacity)
    {
    }

    QIconEngine *clone() const override { return new SymbolEngine(*this); }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device()->devicePixelRatioF();
        QPixmap image = pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state);
        image.setDevicePixelRatio(ratio);
        painter->drawPixmap(rect.topLeft(), image);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        if (size.isEmpty())
            return {};
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        const int side = std::min(size.width(), size.height());
        const QPoint corner((size.width() - side) / 2, (size.height() - side) / 2);
        for (const auto &layer : m_layers)
            painter.drawImage(corner, drawing(layer.symbol, color(layer, mode), side));
        // Apply the opacity to the whole image, or the lower layers would shine through the upper
        // ones.
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(image.rect(), QColor::fromRgbF(0, 0, 0, opacity(mode)));
        painter.end();
        return QPixmap::fromImage(image);
    }

    /// The sizes that trays ask for. Trays on the bus receive no others.
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}, {64, 64}, {96, 96}};
    }

private:
    /// In a selected row, symbols have the colour of its text.
    static QColor color(const Layer &layer, QIcon::Mode mode)
    {
        return mode == QIcon::Selected ? QGuiApplication::palette().color(QPalette::HighlightedText)
                                       : layer.color;
    }

    float opacity(QIcon::Mode mode) const
    {
        return float(mode == QIcon::Disabled ? m_opacity * disabledOpacity : m_opacity);
    }

    QList<Layer> m_layers;
    qreal m_opacity;
};

QIcon layeredIcon(const QList<Layer> &layers, qreal opacity)
{
    for (const auto &layer : layers) {
        if (drawing(layer.symbol, layer.color, commonGrid).isNull())
            return {};
    }
    return QIcon(new SymbolEngine(layers, opacity));
}
} // namespace

QIcon systemSymbol(const QString &name, const QColor &color)
{
    return layeredIcon({{name, color}}, 1);
}

QIcon statusImage(const QString &name, StatusEmphasis emphasis)
{
    // The dark plate is visible on light panels, the light symbol on it on dark ones.
    const QList<Layer> layers{
        {u"status.plate"_s, QColor(0x26, 0x2a, 0x2c)},
        {name, Qt::white},
    };
    return layeredIcon(layers, emphasis == StatusEmphasis::Dimmed ? dimmedOpacity : 1);
}
