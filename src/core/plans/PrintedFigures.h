#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

// Figures one tool run prints and a later run of the same plan takes as
// arguments: ffmpeg's loudness normalisation measures in a first pass and
// is given what it measured in the second. A run's arguments hold marks
// where the figures go; the plan fills them in when the run starts, and a
// saved script puts shell variables of the same names there.

// The mark that stands for the figure `name` in a run's argument: its name
// between two control characters, which no argument holds by chance.
constexpr char16_t FigureMarkOpen = u'\x02', FigureMarkClose = u'\x03';
QString figureMark(const QString& name);
// The figure names marked in `argument`, in order.
QStringList markedFigures(const QString& argument);
// `arguments` with every mark replaced by its figure (a mark whose figure is
// unknown is left as it is, so the run refuses it).
QStringList fillFigures(QStringList arguments, const QHash<QString, QString>& figures);

// The figures named `names` among the `"name" : "value"` lines a run printed
// (the JSON summaries of ffmpeg's filters), the last of each where there are
// several; names not found are left out.
QHash<QString, QString> readPrintedFigures(const QString& output, const QStringList& names);

// Whether a figure is a plain number a tool can be given again: digits, a
// point and signs only ("-23.41", "+0.32"; not "-inf" nor "nan"). A saved
// script checks its figures by the same rule.
bool isPlainNumber(const QString& figure);
