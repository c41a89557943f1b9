#include "settings/Recorder.h"

#include "platform/ModifierForms.h"
#include "platform/Wording.h"
#include "store/ShortcutStore.h"

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace KeyboardShortcuts
{

namespace
{
/// The virtual key code of the Escape key.
constexpr quint16 escape = 53;
/// The design's width.
constexpr int minimumLabelWidth = 150;
} // namespace

quint32 modifierFlagsToCarbon(quint32 modifierFlags)
{
    return converted(modifierFlags, &ModifierForms::eventFlag, &ModifierForms::mask);
}

Recorder::Recorder(ShortcutStore &store, EventMonitor &eventMonitor, const Name &name,
                   std::function<void(const std::optional<Shortcut> &)> onChange)
    : m_store(store)
    , m_eventMonitor(eventMonitor)
    , m_name(name)
    , m_onChange(std::move(onChange))
    , m_current(store.getShortcut(name))
{
    const Item mainButton = described(
        [this] { return spokenKeys(); },
        announcedChanges(button([this] { return label(); }, [this] { toggleRecording(); })));
    m_button = mainButton.widget;
    m_button->setMinimumWidth(minimumLabelWidth);
    setBody(Row{
        spacing(8),
        mainButton,
        shownWhen([this] { return m_current.has_value(); },
                  button(u"Clear"_s, [this] { clear(); })),
        shownWhen(
            [this] { return m_hint.has_value(); },
            stretched(announced(tinted(
                TextColor::secondary,
                paragraph(TextStyle::caption, [this] { return m_hint.value_or(QString()); }))))),
        Spacer{},
    });
}

QString Recorder::label() const
{
    if (m_recording)
        return u"Press the keys…"_s;
    return m_current ? m_store.keyText(*m_current) : u"Record Shortcut"_s;
}

QString Recorder::spokenKeys() const
{
    return m_recording ? QString() : m_store.spokenKeys(m_name);
}

void Recorder::toggleRecording()
{
    if (m_recording)
        stop();
    else
        start();
}

void Recorder::start()
{
    m_hint = u"Esc cancels"_s;
    m_recording = true;
    m_monitor = m_eventMonitor.addLocalMonitorForEvents(
        *this, [this](const KeyEvent &event) { handle(event); });
    invalidate();
}

void Recorder::stop()
{
    m_monitor.reset();
    m_recording = false;
    m_hint.reset();
    invalidate();
}

void Recorder::handle(const KeyEvent &event)
{
    if (event.keyCode == escape) {
        stop();
        return;
    }
    const quint32 modifiers = modifierFlagsToCarbon(event.modifierFlags);
    if (!(modifiers & (commandKey | optionKey | controlKey))) {
        say(m_hint, u"Include "_s + m_store.keyWording().requiredModifiers());
        return;
    }
    stop();
    store(Shortcut{event.keyCode, modifiers});
}

void Recorder::clear()
{
    // The focused button is about to be hidden.
    m_button->setFocus();
    store(std::nullopt);
}

void Recorder::store(const std::optional<Shortcut> &shortcut)
{
    m_current = shortcut;
    m_store.setShortcut(shortcut, m_name);
    if (m_onChange)
        m_onChange(shortcut);
    invalidate();
}

void Recorder::hideEvent(QHideEvent *event)
{
    stop();
    View::hideEvent(event);
}

} // namespace KeyboardShortcuts
