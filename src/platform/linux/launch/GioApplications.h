// The installed applications as GIO lists them.
#pragma once

#include "platform/InstalledApplications.h"

class GioApplications : public InstalledApplications
{
public:
    QList<InstalledApplication> all() override;
    std::optional<InstalledApplication> at(const QString &path) override;
};
