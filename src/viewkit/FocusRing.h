// A line around the focused control, for controls that some styles paint the same with and without
// the focus.
#pragma once

#include "viewkit/Ring.h"

namespace viewkit
{

class FocusRing : public Ring
{
    Q_OBJECT

public:
    /// Like Ring(), but shown only while the control has the focus.
    FocusRing(QWidget *control, int inset);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace viewkit
