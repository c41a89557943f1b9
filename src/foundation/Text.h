// Small helpers for user-visible texts.
#pragma once

#include <QString>

/// The text in typographic quotation marks, as messages show names and targets.
QString quoted(const QString &text);

/// The text; if it is too long for a message, its beginning and an ellipsis.
QString shortened(const QString &text);

/// The text; if it is longer than that, its beginning, an ellipsis and its end.
QString withoutMiddle(const QString &text, qsizetype maxLength);

/// The text without the control characters that change the direction of text, its own or that of
/// what follows.
QString withoutDirections(QString text);

/// Replaces each tab, line break and other control character that would move the following text
/// with a space.
QString onOneLine(const QString &text);
