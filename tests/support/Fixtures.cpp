#include "Fixtures.h"

#include "plans/Plan.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <cmath>
#include <sndfile.h>
#include <vector>

namespace fixtures {

QStringList describe(const Plan& plan) {
    QStringList lines;
    for (const Step& s : plan.steps) {
        if (auto* d = std::get_if<step::DeleteFile>(&s))
            lines << "delete " + d->path;
        else if (auto* r = std::get_if<step::Run>(&s))
            lines << toolName(r->tool) + " " + r->arguments.join(" | ");
        else if (auto* q = std::get_if<step::RequireFile>(&s))
            lines << "require " + q->path + " else " + q->alert;
        else if (auto* p = std::get_if<step::ProbeDuration>(&s))
            lines << "probe " + p->path;
    }
    return lines;
}

int run(const QString& program, const QStringList& arguments, QString* output) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.waitForFinished(-1);
    if (output)
        *output = QString::fromUtf8(process.readAll());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

void makeTone(const QString& path, double seconds, int frequency, double gain) {
    QString output;
    const int code =
        run("sox",
            {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", path, "synth", QString::number(seconds),
             "sine", QString::number(frequency), "vol", QString::number(gain)},
            &output);
    if (code != 0)
        qFatal("sox could not make a tone: %s", qPrintable(output));
}

void makeSilence(const QString& path, double seconds) {
    QString output;
    if (run("sox",
            {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", path, "trim", "0", QString::number(seconds)},
            &output) != 0)
        qFatal("sox could not make silence: %s", qPrintable(output));
}

void join(const QStringList& parts, const QString& path) {
    QString output;
    if (run("sox", QStringList{"-D"} + parts + QStringList{path}, &output) != 0)
        qFatal("sox could not join: %s", qPrintable(output));
}

QString makePattern(const QString& folder) {
    const QString tone = folder + "/tone4.wav", gap = folder + "/gap2.wav", pattern = folder + "/pattern.wav";
    makeTone(tone, 4, 1000, 0.5);
    makeSilence(gap, 2);
    join({tone, gap, tone}, pattern);
    return pattern;
}

QByteArray digest(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

bool WavInfo::isWorkingWav() const {
    return ok && sampleRate == 44100 && channels == 2 && (format & SF_FORMAT_TYPEMASK) == SF_FORMAT_WAV &&
           (format & SF_FORMAT_SUBMASK) == SF_FORMAT_PCM_16;
}

WavInfo wavInfo(const QString& path) {
    WavInfo result;
    SF_INFO info{};
    SNDFILE* file = sf_open(QFile::encodeName(path).constData(), SFM_READ, &info);
    if (!file)
        return result;
    result = {true, info.frames, info.samplerate, info.channels, info.format};
    sf_close(file);
    return result;
}

std::vector<short> samples(const QString& path) {
    SF_INFO info{};
    SNDFILE* file = sf_open(QFile::encodeName(path).constData(), SFM_READ, &info);
    if (!file)
        return {};
    std::vector<short> all(std::size_t(info.frames * info.channels));
    sf_readf_short(file, all.data(), info.frames);
    sf_close(file);
    return all;
}

bool writeWav(const QString& path, const std::vector<short>& samples, qint64 repeats) {
    SF_INFO info{};
    info.samplerate = 44100;
    info.channels = 2;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* file = sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info);
    if (!file)
        return false;
    const sf_count_t frames = sf_count_t(samples.size() / 2);
    bool written = true;
    for (qint64 i = 0; i < repeats && written; ++i)
        written = sf_writef_short(file, samples.data(), frames) == frames;
    sf_close(file);
    return written;
}

double decibels(double a, double b) {
    return 20.0 * std::log10(a / b);
}

double rms(const QString& path, double fromSeconds, double toSeconds) {
    SF_INFO info{};
    SNDFILE* file = sf_open(QFile::encodeName(path).constData(), SFM_READ, &info);
    if (!file)
        return -1.0;
    const sf_count_t from = sf_count_t(fromSeconds * info.samplerate);
    const sf_count_t count = std::max<sf_count_t>(0, sf_count_t(toSeconds * info.samplerate) - from);
    std::vector<double> frames(std::size_t(count * info.channels));
    sf_seek(file, from, SEEK_SET);
    const sf_count_t got = sf_readf_double(file, frames.data(), count);
    sf_close(file);
    double sum = 0.0;
    for (sf_count_t i = 0; i < got; ++i)
        sum += frames[std::size_t(i * info.channels)] * frames[std::size_t(i * info.channels)];
    return got > 0 ? std::sqrt(sum / double(got)) : 0.0;
}

QString useTemporaryHome(const QString& root) {
    QDir().mkpath(root);
    qputenv("HOME", QFile::encodeName(root));
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("XDG_DOCUMENTS_DIR");
    return root;
}

Mount::Mount(const QString& path, const QString& options) : folder(path) {
    QDir().mkpath(folder);
    mounted = run("mount", {"-t", "tmpfs", "-o", options, "tmpfs", folder}) == 0;
}

Mount::~Mount() {
    // A file still open there (a watcher of a dialog that looked at the
    // folder) keeps the disk busy: it is then detached at once, and goes
    // when the last file is closed.
    if (mounted && run("umount", {folder}) != 0)
        run("umount", {"-l", folder});
}

Immutable::Immutable(const QString& path) : folder(path) {
    made = run("chattr", {"+i", folder}) == 0;
}

Immutable::~Immutable() {
    if (made)
        run("chattr", {"-i", folder});
}

} // namespace fixtures
