// sample-window TITLE TEXT: a window, so that one sees that something was opened.

#include <QApplication>
#include <QLabel>

namespace
{
class SampleWindow : public QLabel
{
public:
    explicit SampleWindow(const QStringList &arguments)
        : QLabel(arguments.value(2))
        , m_title(arguments.value(1))
    {
        setAlignment(Qt::AlignCenter);
        setMargin(40);
    }

protected:
    /// The title comes with the content, so that who waits for the one can take a picture of both.
    void paintEvent(QPaintEvent *event) override
    {
        QLabel::paintEvent(event);
        QMetaObject::invokeMethod(
            this, [this] { setWindowTitle(m_title); }, Qt::QueuedConnection);
    }

private:
    QString m_title;
};
} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    SampleWindow window(QApplication::arguments());
    window.show();
    return QApplication::exec();
}
