#include "support/Panel.h"

#include "support/WriteFile.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QTest>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace
{
template <typename Value>
using Reply = std::unique_ptr<Value, decltype([](Value *reply) { std::free(reply); })>;

QString configFile(const QString &name)
{
    return qEnvironmentVariable("XDG_CONFIG_HOME") + u'/' + name;
}

const QByteArray xfceConfig =
    "<channel name='xfce4-panel' version='1.0'><property name='configver' type='int' value='2'/>"
    "<property name='panels' type='array'><value type='int' value='1'/>"
    "<property name='panel-1' type='empty'>"
    "<property name='position' type='string' value='p=6;x=0;y=0'/>"
    "<property name='position-locked' type='bool' value='true'/>"
    "<property name='length' type='uint' value='100'/>"
    "<property name='size' type='uint' value='32'/>"
    "<property name='plugin-ids' type='array'><value type='int' value='1'/></property>"
    "</property></property>"
    "<property name='plugins' type='empty'>"
    "<property name='plugin-1' type='string' value='systray'>"
    "<property name='square-icons' type='bool' value='true'/></property></property></channel>";

const QByteArray lxqtConfig = "[General]\n__userfile__=true\npanels=panel1\n"
                              "[panel1]\nplugins=statusnotifier\nposition=Top\npanelSize=32\n"
                              "[statusnotifier]\ntype=statusnotifier\n";

const QByteArray tint2Config =
    "rounded = 0\nbackground_color = #cccccc 100\n"
    "panel_items = S\npanel_position = top center horizontal\npanel_size = 100% 32\n"
    "panel_background_id = 1\nsystray_padding = 4 4 4\nsystray_icon_size = 22\n";

QStringList command(Panel::Kind kind)
{
    switch (kind) {
    case Panel::Kind::Xfce:
        writeFile(configFile(u"xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"_s), xfceConfig);
        return {u"xfce4-panel"_s, u"--disable-wm-check"_s};
    case Panel::Kind::Lxqt:
        writeFile(configFile(u"lxqt/panel.conf"_s), lxqtConfig);
        return {u"lxqt-panel"_s};
    case Panel::Kind::Trayer:
        return u"trayer --edge top --widthtype percent --width 100 --height 32 --align left"_s
            .split(u' ');
    case Panel::Kind::Tint2:
        writeFile(configFile(u"tint2/tint2rc"_s), tint2Config);
        return {u"tint2"_s};
    }
    Q_UNREACHABLE();
}

bool hasNotifierHost()
{
    auto question = QDBusMessage::createMethodCall(u"org.kde.StatusNotifierWatcher"_s,
                                                   u"/StatusNotifierWatcher"_s,
                                                   u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question << u"org.kde.StatusNotifierWatcher"_s << u"IsStatusNotifierHostRegistered"_s;
    const QDBusReply<QDBusVariant> answer = QDBusConnection::sessionBus().call(question);
    return answer.isValid() && answer.value().variant().toBool();
}

bool hasX11Tray()
{
    auto *const connection = xcb_connect(nullptr, nullptr);
    const QByteArray name("_NET_SYSTEM_TRAY_S0");
    const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, false, uint16_t(name.size()), name), nullptr));
    const Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, atom->atom), nullptr));
    const bool hasOwner = owner->owner != XCB_NONE;
    xcb_disconnect(connection);
    return hasOwner;
}

bool isFound(Panel::Kind kind)
{
    const bool isHost = kind == Panel::Kind::Xfce || kind == Panel::Kind::Lxqt;
    return isHost ? hasNotifierHost() : hasX11Tray();
}
} // namespace

Panel::Panel(Kind kind)
    : m_kind(kind)
{
    // A group, to be killed together: xfce4-panel has its tray in a process of its own.
    m_process.setChildProcessModifier([] { setpgid(0, 0); });
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    const QStringList words = command(kind);
    m_process.start(words.constFirst(), words.sliced(1));
    if (!m_process.waitForStarted())
        qFatal("cannot start %s", qPrintable(words.constFirst()));
    m_group = pid_t(m_process.processId());
    QTRY_VERIFY(isFound(kind));
}

Panel::~Panel()
{
    kill(-m_group, SIGKILL);
    m_process.waitForFinished();
    // Those of the group that have become ours.
    while (waitpid(-m_group, nullptr, 0) > 0)
        continue;
    if (QTest::currentTestFailed())
        qInfo("%s", m_process.readAll().constData());
    QTRY_VERIFY(!isFound(m_kind));
}
