// Small helpers for the texts that people read.
#pragma once

#include <QString>

/// The text between typographic quotation marks, as names and targets stand in messages.
QString quoted(const QString &text);
