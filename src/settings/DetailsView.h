// What an error has to say in the system's own words.
#pragma once

#include "viewkit/View.h"

class DetailsView : public viewkit::View
{
    Q_OBJECT

public:
    /// The callback closes it.
    DetailsView(const QString &details, viewkit::Action onClose);
};
