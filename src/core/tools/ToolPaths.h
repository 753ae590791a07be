#pragma once

#include <QString>

// Absolute paths of the two programs the editor runs; empty when not found.
struct ToolPaths {
    QString sox;
    QString ffmpeg;
    // The library each run preloads so that a terminated tool ends by its
    // signal (see ToolSignals.c); empty runs the tools as they are.
    QString signalGuard = {};
};

// Looks for a tool beside the executable, then in the installation's libexec
// folder, then on PATH. Returns the absolute path, or an empty string.
QString locateTool(const QString& name, const QString& applicationDir);

ToolPaths locateTools(const QString& applicationDir);

// The preloaded library: beside the executable, in the installation's libexec
// folder, or where this build made it. Empty when none is there.
QString locateToolSignals(const QString& applicationDir);

// What start-up tells the user when a tool is missing. Both programs come in
// Debian packages of their own name.
QString missingToolMessage(const QString& toolName);
