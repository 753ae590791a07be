#pragma once

#include "session/Manifest.h"

#include <QColor>
#include <QString>

// What a new document window shows first, given to it when it is made.
struct Opening {
    enum class Kind {
        Silence,        // the silence track
        AskForFile,     // the open dialog; the silence track when it is cancelled
        GeneratedPiece, // a file made for it (a split's piece, a join), used in place
        GivenFile,      // a file named on the command line or dropped, imported
        Nothing,        // an opening nobody asked for: the window stays empty
        Recovered,      // a window of an editor that died, with its history, source and colour
    };
    Kind kind = Kind::Silence;
    QString path;  // the piece or the given file; no piece left shows the silence track
    QColor colour; // a piece's waveform colour
    ManifestWindow recovered = {};

    static Opening silence() { return {}; }
    static Opening askForFile() { return {Kind::AskForFile, {}, {}}; }
    static Opening piece(const QString& path, const QColor& colour) {
        return {Kind::GeneratedPiece, path, colour};
    }
    static Opening givenFile(const QString& path) { return {Kind::GivenFile, path, {}}; }
    static Opening recoveredWindow(const ManifestWindow& window) {
        return {Kind::Recovered, {}, QColor(window.colour), window};
    }
};
