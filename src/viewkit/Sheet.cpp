#include "viewkit/Sheet.h"

#include "viewkit/Layouts.h"

#include <QKeyEvent>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>

namespace viewkit
{

namespace
{
/// The space reserved for what window managers add above and below the sheet. Title bars are 20 to
/// 40 pixels high.
constexpr int roomForFrame = 60;
} // namespace

Sheet::Sheet(const QString &title, QWidget *content, std::function<void()> cancel, QWidget *owner)
    : QDialog(owner)
    , m_content(content)
    , m_cancel(std::move(cancel))
{
    setWindowTitle(title);
    // No minimize button: a minimized sheet would leave its owner blocked for no visible reason.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint
                   | Qt::WindowCloseButtonHint);
    auto *const area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(content);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(area);
    content->installEventFilter(this);
}

bool Sheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_content && event->type() == QEvent::LayoutRequest)
        fitToContent();
    return QDialog::eventFilter(watched, event);
}

void Sheet::keyPressEvent(QKeyEvent *event)
{
    // Ignore auto-repeats: the key may still be held from an earlier dialog.
    if (!event->isAutoRepeat())
        QDialog::keyPressEvent(event);
}

void Sheet::showEvent(QShowEvent *event)
{
    fitToContent();
    QDialog::showEvent(event);
}

void Sheet::fitToContent()
{
    const int width = std::max(m_content->minimumWidth(), m_content->minimumSizeHint().width());
    const int height = settledHeight(*m_content, width);
    m_content->resize(width, height);
    const int maxHeight = screen()->availableGeometry().height() - roomForFrame;
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    setFixedSize(height > maxHeight ? width + scrollBar : width, std::min(height, maxHeight));
}

} // namespace viewkit
