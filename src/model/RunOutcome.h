// The result of running an entry.
#pragma once

#include <QString>
#include <utility>

struct RunOutcome {
    enum class Case {
        /// The target does not exist; nothing was opened.
        missing,
        /// The target is malformed, or the system refused to open it.
        failed,
        /// The action was handed to the system.
        success,
    };

    static RunOutcome missing(QString reason) { return {Case::missing, std::move(reason)}; }
    static RunOutcome failed(QString message) { return {Case::failed, std::move(message)}; }
    static RunOutcome success() { return {Case::success, {}}; }

    Case outcome;
    /// A sentence for the user; empty on success.
    QString message;

    bool operator==(const RunOutcome &) const = default;
};
