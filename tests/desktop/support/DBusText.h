// Values as they come over a bus, for tests that compare them as texts.
#pragma once

#include <QString>
#include <QVariant>

/// Structures in round brackets, arrays in square ones, maps in curly ones; variants as what they
/// hold. A compound value can be read once.
QString dbusText(const QVariant &value);
