#include "platform/linux/appearance/XSettings.h"

#include "platform/linux/x11/Atom.h"

#include <QDataStream>
#include <QGuiApplication>
#include <QIODevice>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
/// In units of 4 bytes; far more than all settings of a desktop.
constexpr uint32_t maxPropertyLength = 1 << 18;

enum SettingType : quint8 {
    integerSetting,
    textSetting,
    colorSetting,
};

/// Also skips what pads the text to a multiple of 4 bytes.
QByteArray readText(QDataStream &stream, quint32 length)
{
    if (length > stream.device()->bytesAvailable()) {
        stream.setStatus(QDataStream::ReadPastEnd);
        return {};
    }
    const QByteArray text = stream.device()->read(length);
    stream.skipRawData(int(-length % 4));
    return text;
}

/// Reads the value of a setting; empty unless it is a text.
QByteArray readValue(QDataStream &stream, quint8 type)
{
    quint32 number = 0;
    switch (type) {
    case textSetting:
        stream >> number;
        return readText(stream, number);
    case integerSetting:
        stream >> number;
        return {};
    case colorSetting:
        stream >> number >> number;
        return {};
    default:
        stream.setStatus(QDataStream::ReadCorruptData);
        return {};
    }
}
} // namespace

QString gtkThemeName(const QByteArray &content)
{
    QDataStream stream(content);
    stream.setByteOrder(content.startsWith('\0') ? QDataStream::LittleEndian
                                                 : QDataStream::BigEndian);
    quint32 byteOrder = 0;
    quint32 serial = 0;
    quint32 count = 0;
    stream >> byteOrder >> serial >> count;
    for (quint32 index = 0; index < count && stream.status() == QDataStream::Ok; ++index) {
        quint8 type = 0;
        quint8 padding = 0;
        quint16 nameLength = 0;
        stream >> type >> padding >> nameLength;
        const QByteArray name = readText(stream, nameLength);
        stream >> serial;
        const QByteArray value = readValue(stream, type);
        if (name == "Net/ThemeName")
            return QString::fromUtf8(value);
    }
    return {};
}

void XSettings::start()
{
    auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return;
    m_connection = x11->connection();
    m_selection = atom(m_connection, "_XSETTINGS_S0");
    m_property = atom(m_connection, "_XSETTINGS_SETTINGS");
    m_managerMessage = atom(m_connection, "MANAGER");
    qGuiApp->installNativeEventFilter(this);
    read();
}

bool XSettings::nativeEventFilter(const QByteArray &type, void *message, qintptr *)
{
    if (type == "xcb_generic_event_t" && isNews(*static_cast<xcb_generic_event_t *>(message)))
        read();
    return false;
}

bool XSettings::isNews(const xcb_generic_event_t &event) const
{
    switch (event.response_type & ~0x80) {
    case XCB_PROPERTY_NOTIFY: {
        const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        return change.window == m_manager && change.atom == m_property;
    }
    case XCB_DESTROY_NOTIFY:
        return reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window == m_manager;
    case XCB_CLIENT_MESSAGE: {
        const auto &news = reinterpret_cast<const xcb_client_message_event_t &>(event);
        return news.type == m_managerMessage && news.data.data32[1] == m_selection;
    }
    default:
        return false;
    }
}

void XSettings::read()
{
    const auto owner = owned(xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, m_selection), nullptr));
    m_manager = owner ? owner->owner : xcb_window_t(XCB_NONE);
    const QString name = m_manager == XCB_NONE ? QString() : gtkThemeName(content());
    if (std::exchange(m_themeName, name) != name)
        Q_EMIT changed();
}

/// Selects the events first, so that no change is missed.
QByteArray XSettings::content() const
{
    // The events that Qt has selected for itself, because this replaces its choice.
    const uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    const auto selected =
        xcb_change_window_attributes_checked(m_connection, m_manager, XCB_CW_EVENT_MASK, &events);
    // Qt would print the error if the window has gone.
    xcb_discard_reply(m_connection, selected.sequence);
    const auto request = xcb_get_property(m_connection, false, m_manager, m_property, m_property, 0,
                                          maxPropertyLength);
    const auto property = owned(xcb_get_property_reply(m_connection, request, nullptr));
    if (!property)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(property.get())),
            xcb_get_property_value_length(property.get())};
}
