// The file that transfers a list with its key combinations to another computer.
#pragma once

#include "foundation/Json.h"
#include "model/ActionKind.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>

/// One entry of the file. It has no id: the import assigns a new one.
struct ExportItem {
    QString name;
    ActionKind kind = ActionKind::app;
    QString target;
    bool isEnabled = true;
    /// The combination, as in KeyboardShortcuts::Shortcut; both are absent if there is none.
    std::optional<qint64> keyCode;
    std::optional<qint64> modifiers;

    bool operator==(const ExportItem &) const = default;

    /// Omits absent members.
    Json toJson() const;

    /// Only the members of the combination may be missing or null. Unknown members are ignored.
    static Result<ExportItem> fromJson(const Json &json);
};

struct ExportFile {
    /// The version of the format. Any number is accepted.
    qint64 version = 1;
    /// In list order.
    QList<ExportItem> items;

    bool operator==(const ExportFile &) const = default;

    /// Human-readable: indented, with members sorted by key.
    QByteArray encoded() const;

    /// One invalid item makes the whole file an error.
    static Result<ExportFile> decoded(const QByteArray &text);
};
