#include "support/ScreenReader.h"

#include "support/Accessible.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <utility>

using namespace Qt::StringLiterals;

ScreenReader::ScreenReader()
{
    auto bus = Accessible::bus();
    // Programs tell only what somebody has asked for.
    for (const QString &event :
         {u"object:state-changed:showing"_s, u"object:property-change:accessible-name"_s}) {
        const QString registry = u"org.a11y.atspi.Registry"_s;
        auto request = QDBusMessage::createMethodCall(registry, u"/org/a11y/atspi/registry"_s,
                                                      registry, u"RegisterEvent"_s);
        request << event;
        if (const auto answer = bus.call(request); answer.type() != QDBusMessage::ReplyMessage)
            qFatal("cannot hear of %s: %s", qPrintable(event), qPrintable(answer.errorMessage()));
    }
    const QString events = u"org.a11y.atspi.Event.Object"_s;
    bus.connect({}, {}, events, u"StateChanged"_s, this, SLOT(stateChanged(QDBusMessage)));
    bus.connect({}, {}, events, u"PropertyChange"_s, this, SLOT(propertyChanged(QDBusMessage)));
}

QStringList ScreenReader::heard()
{
    // What programs told before their last answer is there.
    QCoreApplication::processEvents();
    return std::exchange(m_heard, {});
}

void ScreenReader::stateChanged(const QDBusMessage &signal)
{
    const auto source = Accessible::source(signal);
    const bool appears =
        signal.arguments().value(0) == u"showing"_s && signal.arguments().value(1) == 1;
    if (appears && source.role() == u"notification")
        m_heard << source.name();
}

void ScreenReader::propertyChanged(const QDBusMessage &signal)
{
    const auto source = Accessible::source(signal);
    if (source.is(Accessible::State::focused))
        m_heard << source.name();
}
