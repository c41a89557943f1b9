// A window-modal dialog whose content decides when it ends.
#pragma once

#include <QDialog>
#include <functional>

namespace viewkit
{

class Sheet : public QDialog
{
    Q_OBJECT

public:
    /// The content becomes the sheet's own, and settles its size; what does not fit on the screen
    /// can be scrolled to. The sheet's close button and Escape call the cancelling action, and
    /// leave it to that to close the sheet.
    Sheet(const QString &title, QWidget *content, std::function<void()> cancel, QWidget *owner);

    void reject() override { m_cancel(); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void fitToContent();

    QWidget *m_content;
    std::function<void()> m_cancel;
};

} // namespace viewkit
