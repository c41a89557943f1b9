// Keeps auto-repeats from the windows that Qt takes for releases and presses.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

#include <QKeyEvent>
#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>

/// The X server sends a repeat of a held key as a release and a press with the same time. If Qt
/// handles the release before the press has arrived, it reports them as if the user had let go of
/// the key and pressed it again: a held Space then clicks a button over and over. Such repeats are
/// dropped, while those that Qt recognizes pass.
class MisjudgedRepeats final : public QObject
{
public:
    /// The function tells whether the key is down by now.
    explicit MisjudgedRepeats(std::function<bool(XKeycode)> isDown);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool swallowRelease(QObject &window, const QKeyEvent &release);
    bool swallowPress(const QKeyEvent &press);
    bool isRepeat(const QKeyEvent &press) const;

    std::function<bool(XKeycode)> m_isDown;
    /// The last released key and the time of that event; 0 for events without a time.
    XKeycode m_releasedKey{};
    quint64 m_releaseTime = 0;
    /// The last release while it is not certain whether it is a real one, and its window.
    std::unique_ptr<QKeyEvent> m_withheld;
    QPointer<QObject> m_window;
    /// Whether a withheld release is being sent on.
    bool m_isReplaying = false;
};

/// Whether the key is down on the X server of Qt's windows. Waits for the server.
bool isDownOnX11(XKeycode key);
