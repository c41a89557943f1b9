// Shows what the program is and how it treats the user's data.
#pragma once

#include "viewkit/View.h"

class Wording;

class AboutView : public viewkit::View
{
    Q_OBJECT

public:
    /// The callback closes the view.
    AboutView(const Wording &wording, viewkit::Action onClose);
};
