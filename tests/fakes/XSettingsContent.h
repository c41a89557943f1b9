// The content of the property with which settings are announced on an X server.
#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>

class XSettingsContent
{
public:
    explicit XSettingsContent(QDataStream::ByteOrder order = QDataStream::LittleEndian)
        : m_order(order)
    {
    }

    XSettingsContent &addText(const QByteArray &name, const QByteArray &value)
    {
        QDataStream stream(&m_settings, QIODevice::Append);
        begin(stream, 1, name);
        stream << quint32(value.size());
        writePadded(stream, value);
        return *this;
    }

    XSettingsContent &addNumber(const QByteArray &name, qint32 value)
    {
        QDataStream stream(&m_settings, QIODevice::Append);
        begin(stream, 0, name);
        stream << value;
        return *this;
    }

    XSettingsContent &addColor(const QByteArray &name)
    {
        QDataStream stream(&m_settings, QIODevice::Append);
        begin(stream, 2, name);
        stream << quint64(0);
        return *this;
    }

    QByteArray bytes() const
    {
        QByteArray bytes(1, m_order == QDataStream::LittleEndian ? '\0' : '\1');
        QDataStream stream(&bytes, QIODevice::Append);
        stream.setByteOrder(m_order);
        stream.writeRawData("\0\0\0", 3);
        stream << quint32(1) << m_count;
        return bytes + m_settings;
    }

private:
    static void writePadded(QDataStream &stream, const QByteArray &text)
    {
        stream.writeRawData(text.constData(), int(text.size()));
        stream.writeRawData("\0\0\0", int(-quint32(text.size()) % 4));
    }

    void begin(QDataStream &stream, quint8 type, const QByteArray &name)
    {
        ++m_count;
        stream.setByteOrder(m_order);
        stream << type << quint8(0) << quint16(name.size());
        writePadded(stream, name);
        stream << quint32(1);
    }

    QDataStream::ByteOrder m_order;
    QByteArray m_settings;
    quint32 m_count = 0;
};
