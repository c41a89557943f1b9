// Who uses a key combination besides the program.
#pragma once

#include <QString>
#include <optional>

struct KeyUser {
    enum class Kind {
        /// One of the desktop's own shortcuts.
        desktop,
        /// The desktop, which keeps what follows the Super key because that key alone opens
        /// something.
        superKey,
        /// Another program that has grabbed the keys.
        program,
    };
    Kind kind = Kind::desktop;
    /// What the desktop calls the action, on one line; nothing if it has no name for it.
    std::optional<QString> action = {};

    bool operator==(const KeyUser &) const = default;
};
