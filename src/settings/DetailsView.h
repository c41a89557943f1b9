// What an error has to say in the system's own words.
#pragma once

#include "viewkit/View.h"

class DetailsView : public View
{
    Q_OBJECT

public:
    /// The callback closes it.
    DetailsView(const QString &details, Action onClose);
};
