#pragma once

#include <QString>

// Paints the waveform of the 1-hour WAV at `hour` at zoom 1, at the deepest
// zoom and at three zooms between, 50 scroll positions each, and prints the
// median and worst time of a full-width frame. Makes its own QApplication
// (offscreen): run it in a process of its own.
int paintAndReport(int argc, char** argv, const QString& hour);
