// What LXQt keeps in its configuration file for the plugin that tells Qt of its looks.
#pragma once

#include <QFont>
#include <QString>
#include <optional>

struct ConfiguredLooks {
    std::optional<QFont> font;
    QString iconTheme;
};

/// Reads the user's file and, for what that lacks, the system's.
ConfiguredLooks readLxqtLooks();
