#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <vector>

struct Plan;

namespace fixtures {

// A plan written out one step a line, for comparing with the lines a test
// expects: "delete PATH", "ffmpeg A | B | …", "sox …", "require PATH else ALERT", "probe PATH".
QStringList describe(const Plan& plan);

// Runs a command to the end (no shell) and returns its exit code; its output
// goes into `output` when given.
int run(const QString& program, const QStringList& arguments, QString* output = nullptr);

// A stereo 44.1 kHz 16-bit sine tone made by the real sox.
void makeTone(const QString& path, double seconds, int frequency = 1000, double gain = 0.5);

// Silence of the same format.
void makeSilence(const QString& path, double seconds);

// Joins files end to end into `path`, with sox.
void join(const QStringList& parts, const QString& path);

// The pattern the editing tests cut: tone 0–4 s, silence 4–6 s, tone 6–10 s,
// made in `folder` as "pattern.wav"; returns its path.
QString makePattern(const QString& folder);

// The SHA-256 of a file's bytes; empty when it cannot be read.
QByteArray digest(const QString& path);

// What libsndfile reads from a file.
struct WavInfo {
    bool ok = false;
    qint64 frames = 0;
    int sampleRate = 0;
    int channels = 0;
    int format = 0; // libsndfile's SF_FORMAT_* bits
    double seconds() const { return sampleRate > 0 ? double(frames) / sampleRate : 0.0; }
    bool isWorkingWav() const; // 16-bit PCM WAV, 44100 Hz, 2 channels
};
WavInfo wavInfo(const QString& path);

// Every sample of a file as 16-bit integers, channels interleaved.
std::vector<short> samples(const QString& path);

// Writes interleaved stereo 16-bit samples at 44,100 Hz as a WAV file,
// `repeats` times over (a long file in a moment).
bool writeWav(const QString& path, const std::vector<short>& samples, qint64 repeats = 1);

// How many decibels level a is above level b.
double decibels(double a, double b);

// RMS level (0..1) of the first channel between two times.
double rms(const QString& path, double fromSeconds, double toSeconds);

// Points HOME at a fresh folder, so the work folder lands inside it.
QString useTemporaryHome(const QString& root);

// A small tmpfs mounted at `path` for as long as the object lives: a disk
// that fills, or one mounted read-only. Tests run as root, where this works.
struct Mount {
    QString folder;
    bool mounted = false;
    Mount(const QString& path, const QString& options);
    ~Mount();
    Mount(const Mount&) = delete;
    Mount& operator=(const Mount&) = delete;
};

// A folder nobody, root included, may change while the object lives
// ("chattr +i"; a root process ignores the permission bits).
struct Immutable {
    QString folder;
    bool made = false;
    explicit Immutable(const QString& path);
    ~Immutable();
    Immutable(const Immutable&) = delete;
    Immutable& operator=(const Immutable&) = delete;
};

} // namespace fixtures
