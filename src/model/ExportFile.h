// The file by which a list, key combinations included, goes to another computer.
#pragma once

#include "foundation/Json.h"
#include "model/ActionKind.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>

/// One entry of the file. It has no id: whoever takes it in gives it a new one.
struct ExportItem {
    QString name;
    ActionKind kind = ActionKind::app;
    QString target;
    bool isEnabled = true;
    /// The combination as in KeyboardShortcuts::Shortcut; both are absent where there is none.
    std::optional<qint64> keyCode;
    std::optional<qint64> modifiers;

    bool operator==(const ExportItem &) const = default;

    /// Without the members that are absent.
    Json toJson() const;

    /// Only the combination may be missing, or null; unknown members are ignored.
    static Result<ExportItem> fromJson(const Json &json);
};

struct ExportFile {
    /// Of the format. Any number is accepted.
    qint64 version = 1;
    /// In the order of the list.
    QList<ExportItem> items;

    bool operator==(const ExportFile &) const = default;

    /// For people to read too: indented, members sorted by key.
    QByteArray encoded() const;

    /// One bad item makes the whole file an error.
    static Result<ExportFile> decoded(const QByteArray &text);
};
