// Small helpers for the texts that people read.
#pragma once

#include <QString>

/// The text between typographic quotation marks, as names and targets stand in messages.
QString quoted(const QString &text);

/// The text, or its beginning and an ellipsis where it is too long to be read in a message.
QString shortened(const QString &text);

/// Without what turns the direction of a text, and of that behind it.
QString withoutDirections(QString text);

/// The text with a blank in place of each tab, line break and other character without a glyph
/// that would move what follows it.
QString onOneLine(const QString &text);
