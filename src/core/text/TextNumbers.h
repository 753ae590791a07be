#pragma once

#include <QStringView>

// The lenient reading of a number typed into a text field: leading whitespace is
// skipped, then an optional '+' or '-', then as many decimal digits as follow.
// Whatever comes after the digits is ignored; a text without digits there reads 0.
// A value beyond int's range saturates at INT_MAX or INT_MIN.
int intValue(QStringView text);

// The same lenient reading for a real number: leading whitespace, an optional
// sign, digits with an optional '.' and fraction, and an optional exponent
// ("e-3"). Reading stops at the first character that does not fit, so "1.5abc"
// reads 1.5 and "1,5" reads 1 (the comma is not a decimal mark). A text without
// digits there reads 0. A magnitude beyond float's range saturates at
// ±FLT_MAX; one too small to represent reads 0.
float floatValue(QStringView text);
