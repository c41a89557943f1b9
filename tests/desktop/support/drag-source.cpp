// drag-source TYPE ACTION...: shows a window titled "Source" from which its standard input can be
// dragged, as data of that type. Writes a line for each action that the place below the pointer
// would take, and for that of the drop: "offer copy", "offer link", "offer none", "drop link".

#include <QDrag>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QRasterWindow>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{
const char *nameOf(Qt::DropAction action)
{
    switch (action) {
    case Qt::CopyAction:
        return "copy";
    case Qt::MoveAction:
        return "move";
    case Qt::LinkAction:
        return "link";
    default:
        return "none";
    }
}

Qt::DropActions actionsIn(const QStringList &names)
{
    Qt::DropActions actions;
    for (const auto action : {Qt::CopyAction, Qt::MoveAction, Qt::LinkAction})
        actions.setFlag(action, names.contains(QLatin1StringView(nameOf(action))));
    return actions;
}

void tell(const char *event, Qt::DropAction action)
{
    std::printf("%s %s\n", event, nameOf(action));
    std::fflush(stdout);
}

class Source final : public QRasterWindow
{
public:
    Source(const QString &type, const QByteArray &data, Qt::DropActions actions)
        : m_type(type)
        , m_data(data)
        , m_actions(actions)
    {
        setTitle(u"Source"_s);
        resize(100, 100);
    }

protected:
    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (!event->buttons())
            return;
        auto *const data = new QMimeData;
        data->setData(m_type, m_data);
        auto *const drag = new QDrag(this);
        drag->setMimeData(data);
        connect(drag, &QDrag::actionChanged, this,
                [](Qt::DropAction action) { tell("offer", action); });
        tell("drop", drag->exec(m_actions));
    }

private:
    const QString m_type;
    const QByteArray m_data;
    const Qt::DropActions m_actions;
};
} // namespace

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments().sliced(1);
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return 1;
    Source source(arguments.at(0), input.readAll(), actionsIn(arguments.sliced(1)));
    source.show();
    return QGuiApplication::exec();
}
