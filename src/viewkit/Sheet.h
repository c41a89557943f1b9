// A window-modal dialog that only its content can close.
#pragma once

#include <QDialog>
#include <functional>

namespace viewkit
{

class Sheet : public QDialog
{
    Q_OBJECT

public:
    /// Takes ownership of the content, which determines the sheet's size; content that does not fit
    /// on the screen can be scrolled. The close button and Escape only call the cancelling action,
    /// which has to close the sheet.
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
