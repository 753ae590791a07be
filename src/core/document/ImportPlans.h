#pragma once

#include "names/Names.h"
#include "plans/Plan.h"

// The kinds of file the open dialog offers, by extension; ffmpeg decides
// whether it can read one.
const QStringList& openableExtensions();

// Converts the chosen file into the working WAV at `result` and probes the
// result's duration. Ends with an alert naming the file when nothing could be
// converted; the source is only ever read.
Plan buildImportPlan(const QString& source, const QString& result);

// Measures a file's duration: one ffmpeg run, no output file.
Plan buildProbePlan(const QString& path);

// The alert text of a file ffmpeg could not read as audio.
QString unreadableFileMessage(const QString& source);

// Why a file handed to the editor by name (not chosen in the open dialog,
// which offers only files that are there) cannot be opened: missing, a
// folder, or not readable; empty when it may be tried.
QString givenFileProblem(const QString& path);

// The names of an import's working WAV: the stamp of `now`, unless a file of
// that name exists or the document lists it, in which case the next free
// second. Opening a file then never deletes another document's version, nor,
// when the file is refused, this document's own.
ResultNames importNames(const QString& workFolder, const QStringList& listed,
                        const QDateTime& now = namingNow());
