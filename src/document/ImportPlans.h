#pragma once

#include "app/Plan.h"

// Converts the chosen file into the working WAV at `result` and probes the
// result's duration. Ends with an alert naming the file when nothing could be
// converted; the source is only ever read.
Plan buildImportPlan(const QString& source, const QString& result);

// Measures a file's duration: one ffmpeg run, no output file.
Plan buildProbePlan(const QString& path);

// The alert text of a file ffmpeg could not read as audio.
QString unreadableFileMessage(const QString& source);
