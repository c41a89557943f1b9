// Applies the desktop's looks where Qt does not: its font and icons, and the program's own style on
// desktops that provide none for Qt programs, in dark colours where the desktop prefers them.
#pragma once

#include <QObject>
#include <QPointer>

class Appearance;

namespace viewkit
{
class PlainStyle;
} // namespace viewkit

class PlainLook : public QObject
{
public:
    /// Needs a QApplication. The service must outlive it.
    explicit PlainLook(Appearance &appearance);

private:
    void update();

    const Appearance &m_appearance;
    /// The application's style. Null where the desktop provides one.
    QPointer<viewkit::PlainStyle> m_style;
};
