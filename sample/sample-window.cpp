// sample-window TITLE TEXT...: a window, so that one sees that something was opened.

#include <QApplication>
#include <QLabel>
#include <cstdlib>

namespace
{
class SampleWindow : public QLabel
{
public:
    explicit SampleWindow(const QStringList &arguments)
        : QLabel(arguments.sliced(2).join(u'\n'))
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
    if (QApplication::arguments().size() < 3)
        return EXIT_FAILURE;
    SampleWindow window(QApplication::arguments());
    window.show();
    return QApplication::exec();
}
