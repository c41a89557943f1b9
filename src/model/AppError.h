// An error that the user sees in an alert.
#pragma once

#include <QString>
#include <QUuid>

struct AppError {
    /// Unique for each error, so that the same message twice causes two alerts.
    QUuid id = QUuid::createUuid();
    /// The alert's main text, one sentence.
    QString message;
    /// The message of the underlying system error.
    QString details;

    bool operator==(const AppError &) const = default;
};
