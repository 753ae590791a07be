#pragma once

#include <QString>

// What keeping the manifest of the windows costs, each figure beside the one
// it is measured against in the same run (the editor runs in children of
// `self`, offscreen):
//   - 200 edits of a 10 s track through the editor with the manifest kept
//     and 200 without, in blocks of 50 taking turns;
//   - a start that reopens 10 windows of 20 versions each after a crash,
//     beside a plain start, both to the moment every window shows its track.
void measureRecovery(const QString& self, const QString& folder);

// Child modes of the benchmark's executable.
int editAndReport(int argc, char** argv, const QString& track); // --edits TRACK
int startRecoveredAndReport(int argc, char** argv);             // --startup-recovered
