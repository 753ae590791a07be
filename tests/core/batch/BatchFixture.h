#pragma once

// What the batch tests share: the three-step recipe, files of several kinds
// made with the real tools, and the decoded audio of a result.

#include "batch/Recipe.h"
#include "effects/EffectCatalogue.h"
#include "support/Fixtures.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace batchTest {

// A catalogue row done with its dialog's start values, as OK on an untouched dialog does.
inline RecipeStep effectStep(const QString& key) {
    const EffectEntry* entry = findEffect(key);
    return *effectReplay(key, effectVersionLabel(*entry, false), startValues(entry->dialog)).step;
}

// Normalize, echo and fade in, exported as MP3 (44100 Hz, stereo, the list's "40k").
inline Recipe threeSteps() {
    Recipe recipe;
    recipe.steps = {effectStep("Normalize"), effectStep("Echo"), effectStep("FadeIn")};
    recipe.exportChoice = {2, exporting::DefaultSampleRate, exporting::DefaultChannels,
                           exporting::DefaultBitRate};
    return recipe;
}

// A tone of `seconds` converted by ffmpeg into `path`, whose extension picks the kind.
inline void makeAudio(const QString& path, double seconds, int frequency) {
    const QString wav = path + ".source.wav";
    fixtures::makeTone(wav, seconds, frequency, 0.3);
    QCOMPARE(fixtures::run("ffmpeg", {"-v", "error", "-y", "-i", wav, path}), 0);
    QFile::remove(wav);
}

// Every sample of a compressed file, decoded by ffmpeg into 16-bit PCM.
inline std::vector<short> decoded(const QString& path) {
    const QString wav = path + ".decoded.wav";
    QFile::remove(wav);
    if (fixtures::run("ffmpeg", {"-v", "error", "-i", path, "-acodec", "pcm_s16le", wav}) != 0)
        return {};
    std::vector<short> samples = fixtures::samples(wav);
    QFile::remove(wav);
    return samples;
}

// Whether two results hold the same audio, sample for sample, and some of it.
inline bool sameAudio(const QString& a, const QString& b) {
    const std::vector<short> first = decoded(a), second = decoded(b);
    return first.size() > 44100 && first == second;
}

} // namespace batchTest
