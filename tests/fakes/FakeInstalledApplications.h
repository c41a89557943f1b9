// A computer with the applications that it is given.
#pragma once

#include "platform/InstalledApplications.h"

#include <algorithm>

class FakeInstalledApplications : public InstalledApplications
{
public:
    QList<InstalledApplication> all() override { return applications; }

    std::optional<InstalledApplication> at(const QString &path) override
    {
        const auto found =
            std::find_if(applications.cbegin(), applications.cend(),
                         [&path](const InstalledApplication &app) { return app.path == path; });
        return found == applications.cend() ? std::nullopt : std::optional(*found);
    }

    QList<InstalledApplication> applications;
};
