// An error that the user sees in an alert.
#pragma once

#include <QString>
#include <QUuid>

struct AppError {
    /// Fresh for each error, so that the same text twice makes two alerts.
    QUuid id = QUuid::createUuid();
    /// The alert's main text, one sentence.
    QString message;
    /// The underlying system error in its own words.
    QString details;

    bool operator==(const AppError &) const = default;
};
