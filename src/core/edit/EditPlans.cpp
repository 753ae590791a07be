#include "EditPlans.h"

#include "tools/ToolArguments.h"

#include <QFileInfo>
#include <cmath>
#include <limits>

namespace {
using namespace step;

// Collects the steps of one edit.
struct Builder {
    QString operation; // named when the result is not usable audio
    EditPlan edit = {};
    void remove(const QString& path) { edit.plan.steps.push_back(DeleteFile{path}); }
    void ffmpeg(const QStringList& arguments) { edit.plan.steps.push_back(Run{Tool::FFmpeg, arguments}); }
    void sox(const QStringList& arguments) { edit.plan.steps.push_back(Run{Tool::Sox, arguments}); }
    // Deletes the result, joins the inputs into it and takes it as the new
    // version, which must be as long as its inputs together.
    void joinInto(const QStringList& inputs, const QString& result) {
        remove(result);
        ffmpeg(joinArguments(inputs, result));
        adopt(result, inputs);
    }
    void adopt(const QString& result, const QStringList& joined = {}) {
        edit.result = result;
        edit.plan.steps.push_back(RequireAudio{result, operation, true, joined});
        edit.plan.steps.push_back(ProbeDuration{result});
    }
};

// Before-part up to P and after-part from Q for D: the three-part edits.
void cutBeforeAndAfter(Builder& b, const EditState& s, const ResultNames& names, const QString& p,
                       const QString& q, const QString& d) {
    b.ffmpeg(segmentArguments(s.track, "0", p, names.path("Before")));
    b.ffmpeg(segmentArguments(s.track, q, d, names.path("After")));
}

// Seconds as "%d" of their truncation toward zero; what an int cannot hold pins to its ends.
QString wholeSeconds(float seconds) {
    if (std::isnan(seconds))
        return QStringLiteral("0");
    const double clamped = std::clamp(double(seconds), double(std::numeric_limits<int>::min()),
                                      double(std::numeric_limits<int>::max()));
    return QString::asprintf("%d", int(clamped));
}

void copyInto(Builder& b, const EditState& s, const QString& clip, bool deleteOldClip) {
    if (deleteOldClip && !s.clip.isEmpty())
        b.remove(s.clip);
    b.ffmpeg(segmentArguments(s.track, s.seg.sStartSelection, s.seg.sDurationSelection, clip));
    b.edit.clipboard = clip;
}

// Where a paste, a mix or an inserted silence goes, in the menus' words.
QString placeWords(PastePlace place) {
    switch (place) {
    case PastePlace::Start:
        return QStringLiteral("start");
    case PastePlace::CurrentPosition:
        return QStringLiteral("play position");
    case PastePlace::StartOfSelection:
        return QStringLiteral("start of selection");
    case PastePlace::EndOfSelection:
        return QStringLiteral("end of selection");
    case PastePlace::End:
        return QStringLiteral("end");
    }
    return {};
}

QString placeWords(SilencePlace place) {
    switch (place) {
    case SilencePlace::Start:
        return placeWords(PastePlace::Start);
    case SilencePlace::End:
        return placeWords(PastePlace::End);
    case SilencePlace::CurrentPosition:
        return placeWords(PastePlace::CurrentPosition);
    }
    return {};
}

void removeSelection(Builder& b, const EditState& s, const ResultNames& names) {
    cutBeforeAndAfter(b, s, names, s.seg.sStartSelection, s.seg.sEndSelection, s.seg.sDurationLastSegment);
    b.joinInto({names.path("Before"), names.path("After")}, names.path());
    b.edit.deleteAfterAdopting = {names.path("Before"), names.path("After")};
}
} // namespace

QString versionLabel(const QString& title, bool selectionOnly) {
    return selectionOnly ? QStringLiteral("%1 on selection").arg(title) : title;
}

QString parametersNotAcceptedMessage() {
    return QStringLiteral("Parameters were not accepted. change parameters and try again.");
}

EditPlan buildCopyPlan(const EditState& s, const ResultNames& names, bool deleteOldClip) {
    Builder b{QStringLiteral("Copy")};
    copyInto(b, s, names.path(), deleteOldClip);
    // Only a clip of the selection's length becomes the copied audio.
    b.edit.plan.steps.push_back(RequireAudio{names.path(),
                                             b.operation,
                                             true,
                                             {},
                                             s.track,
                                             secondsOfTimeString(s.seg.sStartSelection),
                                             secondsOfTimeString(s.seg.sDurationSelection)});
    return b.edit;
}

EditPlan buildCutPlan(const EditState& s, const ResultNames& names, bool deleteOldClip) {
    // The clip and the result share one name, so the clipboard ends up naming
    // the remainder: kept as it is.
    Builder b{QStringLiteral("Cut")};
    copyInto(b, s, names.path(), deleteOldClip);
    removeSelection(b, s, names);
    b.edit.label = QStringLiteral("Cut");
    b.edit.replay = notReplayable::selection();
    return b.edit;
}

EditPlan buildDeletePlan(const EditState& s, const ResultNames& names) {
    Builder b{QStringLiteral("Delete")};
    removeSelection(b, s, names);
    b.edit.label = QStringLiteral("Delete");
    b.edit.replay = notReplayable::selection();
    return b.edit;
}

EditPlan buildPastePlan(const EditState& s, const ResultNames& names, PastePlace place) {
    Builder b{QStringLiteral("Paste")};
    b.edit.label = QStringLiteral("Paste at %1").arg(placeWords(place));
    b.edit.replay = notReplayable::copiedAudio();
    const QString before = names.path("Before"), after = names.path("After");
    switch (place) {
    case PastePlace::Start: // named "Before" although no before-part exists, as it always was
        b.joinInto({s.clip, s.track}, before);
        return b.edit;
    case PastePlace::End:
        b.joinInto({s.track, s.clip}, before);
        return b.edit;
    case PastePlace::CurrentPosition:
        cutBeforeAndAfter(b, s, names, s.seg.sCurrentPosition, s.seg.sCurrentPosition,
                          s.seg.sDurationSegmentAfterCurrentPosition);
        break;
    case PastePlace::StartOfSelection:
        cutBeforeAndAfter(b, s, names, s.seg.sStartSelection, s.seg.sStartSelection,
                          s.seg.sDurationSegmentAfterStartSelection);
        break;
    case PastePlace::EndOfSelection:
        cutBeforeAndAfter(b, s, names, s.seg.sEndSelection, s.seg.sEndSelection, s.seg.sDurationLastSegment);
        break;
    }
    b.joinInto({before, s.clip, after}, names.path());
    b.edit.deleteAfterAdopting = {before, after};
    return b.edit;
}

EditPlan buildPasteMixPlan(const EditState& s, const ResultNames& names, PastePlace place) {
    Builder b{QStringLiteral("Mixing the copied audio in")};
    b.edit.label = QStringLiteral("Mix at %1").arg(placeWords(place));
    b.edit.replay = notReplayable::copiedAudio();
    const QString result = names.path();
    b.remove(result);
    QString second = s.clip;
    if (place != PastePlace::Start) {
        // The clip is delayed by whole seconds only: the mix may start up to a second early.
        const float offset = place == PastePlace::CurrentPosition    ? s.seg.f_CurrentPosition
                             : place == PastePlace::StartOfSelection ? s.seg.f_StartSelection
                                                                     : s.seg.f_EndSelection;
        second = paddedPath(s.clip);
        b.remove(second);
        b.sox({s.clip, second, "pad", wholeSeconds(offset)});
    }
    b.sox({"-m", s.track, second, result});
    b.adopt(result);
    return b.edit;
}

EditPlan buildSilenceInsertPlan(const EditState& s, const ResultNames& names, SilencePlace place,
                                quint64 milliseconds) {
    Builder b{QStringLiteral("Inserting silence")};
    b.edit.label = QStringLiteral("Insert silence at %1").arg(placeWords(place));
    b.edit.replay = insertSilenceReplay(b.edit.label, place, milliseconds);
    const QString silence = names.path("Silence");
    b.remove(silence);
    b.ffmpeg(silenceArguments(timeString(float(milliseconds) / 1000.0f), silence));
    switch (place) {
    case SilencePlace::Start:
        b.joinInto({silence, s.track}, names.path());
        b.edit.deleteBeforeShowing = {silence};
        break;
    case SilencePlace::End:
        b.joinInto({s.track, silence}, names.path());
        b.edit.deleteBeforeShowing = {silence};
        break;
    case SilencePlace::CurrentPosition:
        cutBeforeAndAfter(b, s, names, s.seg.sCurrentPosition, s.seg.sCurrentPosition,
                          s.seg.sDurationSegmentAfterCurrentPosition);
        b.joinInto({names.path("Before"), silence, names.path("After")}, names.path());
        b.edit.deleteAfterAdopting = {silence, names.path("Before"), names.path("After")};
        break;
    }
    return b.edit;
}

EditPlan buildSilenceSelectionPlan(const EditState& s, const ResultNames& names) {
    // The length passes through whole milliseconds before it becomes a time string.
    const float start = s.f_Selection_Start * s.f_Audio_Length / 100.0f;
    const float end = s.f_Selection_End * s.f_Audio_Length / 100.0f;
    const std::uint64_t milliseconds = truncateToUnsigned((end - start) * 1000.0f);
    Builder b{QStringLiteral("Silencing the selection")};
    b.edit.label = QStringLiteral("Silence the selection");
    b.edit.replay = notReplayable::selection();
    const QString silence = names.path("Silence");
    b.remove(silence);
    b.ffmpeg(silenceArguments(timeString(float(milliseconds) / 1000.0f), silence));
    cutBeforeAndAfter(b, s, names, s.seg.sStartSelection, s.seg.sEndSelection, s.seg.sDurationLastSegment);
    b.joinInto({names.path("Before"), silence, names.path("After")}, names.path());
    b.edit.deleteAfterAdopting = {silence, names.path("Before"), names.path("After")};
    return b.edit;
}

EditPlan buildSilenceTrimPlan(const EditState& s, const ResultNames& names, quint64 mode,
                              quint64 milliseconds) {
    const QString d = QString::asprintf("%.02f", double(milliseconds) / 1000.0);
    QStringList effect;
    if (mode == 1)
        effect = {"silence", "1", d, "1%"};
    else if (mode == 2) // trims the start, then reverses the whole track: kept exactly so
        effect = {"silence", "1", d, "1%", "reverse"};
    else if (mode == 3)
        effect = {"silence", "1", d, "1%", "-1", d, "1%"};
    Builder b{QStringLiteral("Trimming silence")};
    b.edit.label = mode == 1   ? QStringLiteral("Trim silence from start")
                   : mode == 2 ? QStringLiteral("Trim silence from end")
                   : mode == 3 ? QStringLiteral("Trim silence from both ends")
                               : QStringLiteral("Trim silence");
    b.edit.replay = trimSilenceReplay(b.edit.label, mode, milliseconds);
    const QString result = names.path();
    b.remove(result);
    b.sox(QStringList{s.track, result} + effect);
    b.edit.plan.steps.push_back(step::RequireFile{result, parametersNotAcceptedMessage()});
    b.adopt(result);
    return b.edit;
}
