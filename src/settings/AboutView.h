// What the program is, and what it does with what it learns.
#pragma once

#include "viewkit/View.h"

class AboutView : public viewkit::View
{
    Q_OBJECT

public:
    /// The callback closes it.
    explicit AboutView(viewkit::Action onClose);
};
