#pragma once

#include <QString>

// Opens the 1-hour WAV at `hour` in the editor, selects ten seconds of it,
// opens the echo dialog and presses Preview again and again, timing each
// press to the first sample the audio server plays (heard from the sink's
// monitor) and to the moment the preview was made. Prints the median and
// each run. Makes its own QApplication (offscreen) and needs a sound server
// (scripts/with-audio-server.sh): run it in a process of its own.
int previewAndReport(int argc, char** argv, const QString& hour);
