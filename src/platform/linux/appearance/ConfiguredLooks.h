// The looks that LXQt and Plasma keep in configuration files for their plugins, which tell Qt.
#pragma once

#include <QFont>
#include <QPalette>
#include <QString>
#include <QStringList>
#include <optional>

/// Without what Qt reads itself and need not read again.
struct ConfiguredLooks {
    std::optional<QPalette> palette;
    std::optional<QFont> font;
    QString iconTheme;

    bool operator==(const ConfiguredLooks &) const = default;
};

enum class LooksSource {
    lxqt,
    plasma,
};

/// The files in order of precedence. The first one is the user's and may be missing.
QStringList looksFiles(LooksSource source);

/// Reads the user's file and, for what that lacks, the system's.
ConfiguredLooks readLooks(LooksSource source);
