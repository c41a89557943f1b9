// A desktop on which programs register key combinations, whatever the way is: its keys, its layouts
// and the other programs on it.
#pragma once

#include "support/KeyPresser.h"

#include <QByteArray>
#include <QString>
#include <memory>

class HotkeyDesktop
{
public:
    /// The one that the test runs on.
    static std::unique_ptr<HotkeyDesktop> running();

    HotkeyDesktop() = default;
    virtual ~HotkeyDesktop() = default;
    Q_DISABLE_COPY_MOVE(HotkeyDesktop)

    /// The way in which programs register combinations here.
    virtual QString way() const = 0;

    virtual KeyPresser &keyboard() = 0;

    /// Whether some program has Control, Alt and the key, which gives that letter in the layout in
    /// use.
    virtual bool isTaken(int key, char letter) const = 0;

    /// Has another program take Control, Alt and K for as long as the returned object lives.
    virtual std::shared_ptr<void> takeKByAnother() = 0;

    /// Up to four names of layouts, separated by commas; the first is in use.
    virtual void setLayouts(const QByteArray &names) = 0;
    /// To one of several layouts, counted from 0.
    virtual void switchToLayout(quint8 layout) = 0;
};
