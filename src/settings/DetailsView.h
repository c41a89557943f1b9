// Shows the system's message for an error.
#pragma once

#include "viewkit/View.h"

class DetailsView : public viewkit::View
{
    Q_OBJECT

public:
    /// The callback closes the view.
    DetailsView(const QString &details, viewkit::Action onClose);
};
