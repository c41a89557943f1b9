#include "viewkit/Sheet.h"

#include "viewkit/Item.h"
#include "viewkit/Layouts.h"

#include <QKeyEvent>
#include <QPointer>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>
#include <memory>

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

Item sheetWhen(QWidget *owner, Predicate isShown, std::function<QDialog *(QWidget *owner)> make)
{
    const auto sheet = std::make_shared<QPointer<QDialog>>();
    return {.rules = {[=, isShown = std::move(isShown), make = std::move(make)] {
                const bool wanted = isShown();
                if (wanted == !sheet->isNull())
                    return;
                if (wanted) {
                    *sheet = make(owner);
                    // Open it later: the owner may not be on the screen yet.
                    const auto open = [sheet, made = sheet->data()] {
                        if (*sheet == made)
                            made->open();
                    };
                    QMetaObject::invokeMethod(*sheet, open, Qt::QueuedConnection);
                } else {
                    (*sheet)->hide();
                    (*sheet)->deleteLater();
                    sheet->clear();
                }
            }}};
}

} // namespace viewkit
