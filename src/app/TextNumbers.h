#pragma once

#include <QStringView>

// The lenient reading of a number typed into a text field: leading whitespace is
// skipped, then an optional '+' or '-', then as many decimal digits as follow.
// Whatever comes after the digits is ignored; a text without digits there reads 0.
// A value beyond int's range saturates at INT_MAX or INT_MIN.
int intValue(QStringView text);
