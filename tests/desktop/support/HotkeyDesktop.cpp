#include "support/HotkeyDesktop.h"

#include "support/Keyboard.h"
#include "support/PlasmaKeys.h"
#include "support/PlasmaSettings.h"
#include "support/WaylandKeyboard.h"

#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
class X11Desktop final : public HotkeyDesktop
{
public:
    QString way() const override { return u"X11"_s; }
    KeyPresser &keyboard() override { return m_keyboard; }
    bool isTaken(int key, char) const override { return m_keyboard.isGrabbed(key, controlAlt); }

    std::shared_ptr<void> takeKByAnother() override
    {
        auto other = std::make_shared<Keyboard>();
        other->grab(KEY_K, controlAlt);
        return other;
    }

    void setLayouts(const QByteArray &names) override
    {
        QCOMPARE(QProcess::execute(u"setxkbmap"_s, {QString::fromLatin1(names)}), 0);
    }
    void switchToLayout(quint8 layout) override { m_keyboard.setGroup(layout); }

private:
    static constexpr quint16 controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

    Keyboard m_keyboard;
};

class PlasmaDesktop final : public HotkeyDesktop
{
public:
    QString way() const override { return u"Plasma"_s; }
    KeyPresser &keyboard() override { return m_keyboard; }
    bool isTaken(int, char letter) const override
    {
        return !askKGlobalAccel(u"action"_s, {codeOf(letter)})
                    .arguments()
                    .value(0)
                    .toStringList()
                    .isEmpty();
    }

    std::shared_ptr<void> takeKByAnother() override
    {
        return std::make_shared<PlasmaRival>(codeOf('K'));
    }

    void setLayouts(const QByteArray &names) override
    {
        ::setLayouts(names);
        if (names.contains(','))
            switchToLayout(0);
    }
    void switchToLayout(quint8 layout) override { ::switchToLayout(layout); }

private:
    /// Qt's codes of letters are those of ASCII.
    static int codeOf(char letter)
    {
        return int(Qt::ControlModifier) | int(Qt::AltModifier) | letter;
    }

    WaylandKeyboard m_keyboard;
};
} // namespace

std::unique_ptr<HotkeyDesktop> HotkeyDesktop::running()
{
    if (qEnvironmentVariable("XDG_CURRENT_DESKTOP") == u"KDE")
        return std::make_unique<PlasmaDesktop>();
    return std::make_unique<X11Desktop>();
}
