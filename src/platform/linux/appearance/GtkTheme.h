// Tells whether windows in a theme of GTK are dark, by the theme's colours.
#pragma once

#include <QString>

enum class GtkVariant {
    standard,
    /// For users who want all programs to be dark. Not all themes have it.
    dark,
};

struct GtkTheme {
    /// Empty if the user has none.
    QString name;
    GtkVariant variant = GtkVariant::standard;

    bool operator==(const GtkTheme &) const = default;
};

/// The theme that users have chosen for sessions in which nothing announces one.
GtkTheme readGtkTheme();

/// Falls back to the theme's name if it is part of GTK or has no colours that can be read.
bool isDark(const GtkTheme &theme);
