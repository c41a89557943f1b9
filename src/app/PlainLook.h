// How the program looks on desktops that have no look of their own for Qt programs; dark where the
// desktop wants that.
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
    /// The application's own. Null where the desktop has a style.
    QPointer<viewkit::PlainStyle> m_style;
};
