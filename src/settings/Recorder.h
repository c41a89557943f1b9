// The control that sets or clears the key combination of one name.
#pragma once

#include "hotkeys/KeyboardShortcuts.h"
#include "platform/EventMonitor.h"
#include "platform/Registration.h"
#include "viewkit/View.h"

#include <functional>
#include <optional>

class ShortcutStore;

namespace KeyboardShortcuts
{

/// Converts an event's flags to a mask of KeyModifier bits; other flags are dropped.
quint32 modifierFlagsToCarbon(quint32 modifierFlags);

/// Each new combination is stored and takes effect at once.
class Recorder : public viewkit::View
{
    Q_OBJECT

public:
    /// The callback receives every new combination, and nothing when it is cleared. The store and
    /// the monitor must outlive the recorder.
    Recorder(ShortcutStore &store, EventMonitor &eventMonitor, const Name &name,
             std::function<void(const std::optional<Shortcut> &)> onChange = {});

protected:
    void hideEvent(QHideEvent *event) override;

private:
    QString label() const;
    QString spokenKeys() const;
    void toggleRecording();
    void start();
    void stop();
    void handle(const KeyEvent &event);
    void clear();
    void store(const std::optional<Shortcut> &shortcut);

    ShortcutStore &m_store;
    EventMonitor &m_eventMonitor;
    const Name m_name;
    const std::function<void(const std::optional<Shortcut> &)> m_onChange;
    std::optional<Shortcut> m_current;
    bool m_recording = false;
    std::optional<QString> m_hint;
    std::optional<Registration> m_monitor;
    QWidget *m_button = nullptr;
};

} // namespace KeyboardShortcuts
