#include "symbols/SystemSymbol.h"

#include <QDirIterator>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QPalette>
#include <QRegularExpression>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
const QString command = u"command.square"_s;
const QColor tint(0x12, 0x90, 0xc8);

QImage imageOf(const QIcon &icon, int side, qreal ratio = 1, QIcon::Mode mode = QIcon::Normal)
{
    QImage image = icon.pixmap({side, side}, ratio, mode).toImage();
    image.setDevicePixelRatio(1);
    return image.convertToFormat(QImage::Format_ARGB32);
}

QList<QRgb> pixels(const QImage &image)
{
    QList<QRgb> all;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            all << image.pixel(x, y);
    }
    return all;
}

int strongestOpacity(const QImage &image)
{
    int strongest = 0;
    for (const QRgb pixel : pixels(image))
        strongest = std::max(strongest, qAlpha(pixel));
    return strongest;
}

/// The relative luminance of WCAG 2.
double luminance(QRgb color)
{
    const auto linear = [](int channel) {
        const double share = channel / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color))
        + 0.0722 * linear(qBlue(color));
}

/// The contrast ratio of WCAG 2.
double contrast(QRgb one, QRgb other)
{
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

/// The contrast to the panel that a twelfth of the image's pixels has at least.
double contrastOnPanel(const QImage &image, const QColor &panel)
{
    QImage shown(image.size(), QImage::Format_RGB32);
    shown.fill(panel);
    QPainter(&shown).drawImage(0, 0, image);
    QList<double> contrasts;
    for (const QRgb pixel : pixels(shown))
        contrasts << contrast(pixel, panel.rgb());
    std::sort(contrasts.begin(), contrasts.end(), std::greater<>());
    return contrasts.at(contrasts.size() / 12);
}

void addSizes()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<int>("ratio");
    for (const int ratio : {1, 2}) {
        for (const int side : {16, 22, 24, 32, 48})
            QTest::addRow("%d points at %dx", side, ratio) << side << ratio;
    }
}

struct DrawnSymbol {
    const char *name;
    /// The sizes, in pixels, that it is mostly shown at; it is crisp there.
    QList<int> sides;
};

const QList<DrawnSymbol> drawnSymbols{
    {"app.badge", {16, 24, 32, 48}},
    {"command.square", {16, 22, 24, 32, 48}},
    {"exclamationmark.triangle.fill", {16, 24, 32, 48}},
    {"folder", {16, 24, 32, 48}},
    {"globe", {16, 24, 32, 48}},
    {"hand.wave", {16, 20, 24, 32, 40}},
    {"keyboard", {16, 40, 60, 80}},
    {"plus", {16, 24, 32, 48}},
    {"square.stack.3d.up", {16, 24, 32, 48}},
    {"trash", {16, 24, 32, 48}},
};

void addDrawnSymbols()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("side");
    for (const auto &symbol : drawnSymbols) {
        for (const int side : symbol.sides) {
            QTest::addRow("%s at %d pixels", symbol.name, side)
                << QString::fromLatin1(symbol.name) << side;
        }
    }
}

/// Whatever can be seen well is within.
QRect drawnBox(const QImage &image)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) >= 64)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

/// The most neighbours in one row that are half covered alike, as along a straight edge that lies
/// within pixels.
int longestBlur(const QImage &image)
{
    constexpr int alike = 8;
    int longest = 0;
    for (int y = 0; y < image.height(); ++y) {
        int length = 0;
        for (int x = 0; x < image.width(); ++x) {
            const int opacity = qAlpha(image.pixel(x, y));
            const int before = x > 0 ? qAlpha(image.pixel(x - 1, y)) : 0;
            if (opacity < alike || opacity > 255 - alike)
                length = 0;
            else
                length = std::abs(opacity - before) < alike ? length + 1 : 1;
            longest = std::max(longest, length);
        }
    }
    return longest;
}

void addSizesOnPanels()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<QColor>("panel");
    for (const int side : {16, 22, 24, 32, 48, 64, 96}) {
        for (const char *const panel : {"#ffffff", "#f6f5f4", "#dadada", "#808080", "#3daee9",
                                        "#475057", "#2e3436", "#000000"}) {
            QTest::addRow("%d pixels on %s", side, panel)
                << side << QColor(QString::fromLatin1(panel));
        }
    }
}
} // namespace

class SystemSymbolTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void hasExactlyThePixelsThatAreAskedFor_data() { addSizes(); }
    void hasExactlyThePixelsThatAreAskedFor()
    {
        QFETCH(const int, side);
        QFETCH(const int, ratio);
        const QImage image = imageOf(systemSymbol(command, tint), side, ratio);
        QCOMPARE(image.size(), QSize(side, side) * ratio);
    }

    void isNoneOfItsOtherSizesScaled_data() { addSizes(); }
    void isNoneOfItsOtherSizesScaled()
    {
        QFETCH(const int, side);
        QFETCH(const int, ratio);
        const QIcon symbol = systemSymbol(command, tint);
        const QImage image = imageOf(symbol, side, ratio);
        for (const int other : {16, 22, 24, 32, 44, 48, 64, 96}) {
            const QImage otherImage = imageOf(symbol, other);
            if (otherImage.size() == image.size())
                continue;
            QVERIFY(image != otherImage.scaled(image.size()));
            const auto smooth = Qt::SmoothTransformation;
            QVERIFY(image != otherImage.scaled(image.size(), Qt::IgnoreAspectRatio, smooth));
        }
    }

    void putsTheEdgesOfStraightLinesBetweenPixels_data() { addSizes(); }
    void putsTheEdgesOfStraightLinesBetweenPixels()
    {
        QFETCH(const int, side);
        QFETCH(const int, ratio);
        const QImage image = imageOf(systemSymbol(command, tint), side, ratio);
        const int middle = image.width() / 2;
        QSet<int> opacities;
        for (int i = 0; i < image.width(); ++i)
            opacities << qAlpha(image.pixel(i, middle)) << qAlpha(image.pixel(middle, i));
        QCOMPARE(opacities, (QSet<int>{0, 255}));
    }

    void framesItselfWithOneRowOfPixelsAt16()
    {
        const QImage image = imageOf(systemSymbol(command, tint), 16);
        QByteArray rows;
        for (int y = 0; y < 16; ++y)
            rows += qAlpha(image.pixel(8, y)) == 255 ? '#' : '.';
        QCOMPARE(rows, ".#....#..#....#.");
    }

    void hasTheColorThatIsAskedFor()
    {
        for (const QRgb pixel : pixels(imageOf(systemSymbol(command, tint), 32))) {
            if (qAlpha(pixel) == 255)
                QCOMPARE(pixel, tint.rgb());
        }
    }

    void isDrawnInOneColorForAnotherMayReplaceIt_data()
    {
        QTest::addColumn<QString>("file");
        QDirIterator files(u":/symbols"_s, {u"*.svg"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString file = files.next();
            QTest::addRow("%s", qPrintable(file)) << file;
        }
    }
    void isDrawnInOneColorForAnotherMayReplaceIt()
    {
        QFETCH(const QString, file);
        QImageReader reader(file, "svg");
        reader.setScaledSize({96, 96});
        const QImage image = reader.read().convertToFormat(QImage::Format_ARGB32);
        QVERIFY2(strongestOpacity(image) == 255, qPrintable(reader.errorString()));
        for (const QRgb pixel : pixels(image)) {
            if (qAlpha(pixel) == 255)
                QCOMPARE(pixel, 0xff2e3436);
        }
    }

    void fillsTheMiddleOfItsBox_data() { addDrawnSymbols(); }
    void fillsTheMiddleOfItsBox()
    {
        QFETCH(const QString, name);
        QFETCH(const int, side);
        const QRect box = drawnBox(imageOf(systemSymbol(name, tint), side));
        const QMargins gaps(box.left(), box.top(), side - 1 - box.right(), side - 1 - box.bottom());
        const std::unique_ptr<char[]> shown(QTest::toString(box));
        const int share = std::max(box.width(), box.height()) * 16 / side;
        QVERIFY2(share >= 10 && share <= 15, shown.get());
        const int pixel = std::max(1, side / 24);
        QVERIFY2(std::abs(gaps.left() - gaps.right()) <= pixel, shown.get());
        QVERIFY2(std::abs(gaps.top() - gaps.bottom()) <= pixel, shown.get());
    }

    void blursNoStraightEdge_data() { addDrawnSymbols(); }
    void blursNoStraightEdge()
    {
        QFETCH(const QString, name);
        QFETCH(const int, side);
        const QImage image = imageOf(systemSymbol(name, tint), side);
        const QImage turned = image.transformed(QTransform().rotate(90));
        const int longest = std::max(longestBlur(image), longestBlur(turned));
        QVERIFY2(longest <= std::max(3, side / 8), QByteArray::number(longest).constData());
    }

    void cutsTheMarkOutOfTheWarning()
    {
        const QIcon warning = systemSymbol(u"exclamationmark.triangle.fill"_s, tint);
        const QImage image = imageOf(warning, 16);
        QByteArray column;
        for (int y = 0; y < 16; ++y)
            column += qAlpha(image.pixel(8, y)) > 128 ? '#' : '.';
        QCOMPARE(column, ".####.....#..##.");
    }

    void isPalerWhereItIsDisabled()
    {
        const QIcon symbol = systemSymbol(command, tint);
        const int opacity = strongestOpacity(imageOf(symbol, 16, 1, QIcon::Disabled));
        QVERIFY2(opacity > 64 && opacity < 128, QByteArray::number(opacity).constData());
    }

    void paintsPixelForPixelOnADenseScreen()
    {
        const QIcon symbol = systemSymbol(command, tint);
        QImage screen(64, 64, QImage::Format_ARGB32);
        screen.fill(Qt::transparent);
        screen.setDevicePixelRatio(2);
        QPainter painter(&screen);
        symbol.paint(&painter, 5, 5, 22, 22);
        painter.end();
        screen.setDevicePixelRatio(1);
        QCOMPARE(screen.copy(10, 10, 44, 44), imageOf(symbol, 44));
    }

    void standsInTheMiddleOfWhatIsNotSquare()
    {
        const QIcon symbol = systemSymbol(command, tint);
        const QImage wide = symbol.pixmap({40, 16}, 1).toImage();
        QCOMPARE(wide.copy(12, 0, 16, 16).convertToFormat(QImage::Format_ARGB32),
                 imageOf(symbol, 16));
    }

    void hasTheColourOfSelectedTextsWhereItIsSelected()
    {
        const QColor selected = QGuiApplication::palette().color(QPalette::HighlightedText);
        QVERIFY(selected != tint);
        const QImage shown =
            systemSymbol(command, tint).pixmap({16, 16}, 1, QIcon::Selected).toImage();
        QCOMPARE(shown, systemSymbol(command, selected).pixmap({16, 16}, 1).toImage());
    }

    void isNullWithOneWarningIfThereIsNoSuchDrawing()
    {
        const QRegularExpression warning(u"^corvane: the symbol \"no.such\" cannot be drawn.*$"_s);
        QTest::ignoreMessage(QtWarningMsg, warning);
        QVERIFY(systemSymbol(u"no.such"_s, tint).isNull());
        QTest::ignoreMessage(QtWarningMsg, warning);
        QVERIFY(statusImage(u"no.such"_s, StatusEmphasis::Normal).isNull());
    }

    void offersTheSizesOfTrays()
    {
        const QIcon image = statusImage(command, StatusEmphasis::Normal);
        QList<QSize> drawn;
        for (const QSize size : image.availableSizes())
            drawn << image.pixmap(size, 1).size();
        QCOMPARE(
            drawn,
            (QList<QSize>{{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}, {64, 64}, {96, 96}}));
    }

    void isSeenOnEveryPanel_data() { addSizesOnPanels(); }
    void isSeenOnEveryPanel()
    {
        QFETCH(const int, side);
        QFETCH(const QColor, panel);
        const QImage image = imageOf(statusImage(command, StatusEmphasis::Normal), side);
        const double contrast = contrastOnPanel(image, panel);
        QVERIFY2(contrast >= 3, QByteArray::number(contrast).constData());
    }

    void isFaintButSeenOnEveryPanelWhileDimmed_data() { addSizesOnPanels(); }
    void isFaintButSeenOnEveryPanelWhileDimmed()
    {
        QFETCH(const int, side);
        QFETCH(const QColor, panel);
        const QImage normal = imageOf(statusImage(command, StatusEmphasis::Normal), side);
        const QImage dimmed = imageOf(statusImage(command, StatusEmphasis::Dimmed), side);
        const double share = contrastOnPanel(dimmed, panel) / contrastOnPanel(normal, panel);
        QVERIFY2(share < 0.75, QByteArray::number(share).constData());
        const double contrast = contrastOnPanel(dimmed, panel);
        QVERIFY2(contrast >= 1.5, QByteArray::number(contrast).constData());
    }

    void beginsWithItsLightFrameFromOutside_data() { addSizes(); }
    void beginsWithItsLightFrameFromOutside()
    {
        QFETCH(const int, side);
        QFETCH(const int, ratio);
        const QImage image = imageOf(statusImage(command, StatusEmphasis::Normal), side, ratio);
        for (int y = 0; y < image.height(); ++y) {
            int x = 0;
            while (x < image.width() / 2 && qAlpha(image.pixel(x, y)) == 0)
                ++x;
            const QRgb outermost = image.pixel(x, y);
            QVERIFY2(qAlpha(outermost) == 0 || qRed(outermost) > 128,
                     qPrintable(QColor::fromRgba(outermost).name(QColor::HexArgb)));
        }
    }
};

QTEST_MAIN(SystemSymbolTest)
#include "SystemSymbolTest.moc"
