// Finding the catalogue's rows and dialogs, naming their actions, and
// checking that a row's declarations agree with its argument builder.

#include "EffectCatalogue.h"

#include "tools/ToolArguments.h"

#include <QSet>

const EffectEntry* findEffect(const QString& key) {
    for (const EffectEntry& entry : effectCatalogue())
        if (entry.key == key)
            return &entry;
    return nullptr;
}

const DialogDeclaration& askNoiseSelectedDialog() {
    static const DialogDeclaration dialog{
        "Window_Ask_Noise_Selected",
        "Noise Reduction",
        "Noise reduction learns the noise from the selection and removes it from the whole track. Does the "
        "selection hold noise only?",
        {},
        {}};
    return dialog;
}

const DialogDeclaration& noiseReductionDialog() {
    static const DialogDeclaration dialog{"Window_Noise_Reduction",
                                          "Noise Reduction",
                                          {},
                                          {slider("f_Level", "Level", "Reduction:", 0, 100, 25)
                                               .over(100, "%.2f")
                                               .because("sox: 0 … 1; 0.2 … 0.3 is its advice")},
                                          {}};
    return dialog;
}

const DialogDeclaration* findDialog(const QString& name) {
    for (const EffectEntry& entry : effectCatalogue())
        if (!entry.dialog.isEmpty() && entry.dialog.name == name)
            return &entry.dialog;
    for (const DialogDeclaration* dialog : {&askNoiseSelectedDialog(), &noiseReductionDialog()})
        if (dialog->name == name)
            return dialog;
    return nullptr;
}

QString actionName(const EffectEntry& entry, bool selection) {
    // The fades have no selection twin and their actions say nothing of the
    // track: OnPopupFadeIn, OnPopupFadeOut.
    if (entry.key.startsWith(QLatin1String("Fade")))
        return "OnPopup" + entry.key;
    return "OnPopup" + entry.key + (selection ? "Selection" : "EntireTrack");
}

QString effectVersionLabel(const EffectEntry& entry, bool selection) {
    return versionLabel(entry.title, selection);
}

QStringList declarationProblems(const EffectEntry& entry) {
    QStringList problems;
    const DialogDeclaration& dialog = entry.dialog;
    QSet<QString> widgets, keys;
    for (const Parameter& p : dialog.parameters) {
        if (widgets.contains(p.widgetName()))
            problems << QStringLiteral("%1: two controls are named %2").arg(entry.key, p.widgetName());
        if (keys.contains(p.key))
            problems << QStringLiteral("%1: two controls fill %2").arg(entry.key, p.key);
        widgets.insert(p.widgetName());
        keys.insert(p.key);
    }
    for (const Check& check : dialog.checks)
        if (!dialog.parameter(check.key))
            problems << QStringLiteral("%1: a check reads %2, which no control declares")
                            .arg(entry.key, check.key);
    const EffectValues values = startValues(dialog);
    entry.arguments(values);
    for (const EffectValues::Read& read : values.reads()) {
        const Parameter* p = dialog.parameter(read.key);
        if (!p)
            problems << QStringLiteral("%1: the arguments read %2, which no control declares")
                            .arg(entry.key, read.key);
        else if (p->type != read.type)
            problems << QStringLiteral("%1: the arguments read %2 as %3, but its control holds %4")
                            .arg(entry.key, read.key, typeName(read.type), typeName(p->type));
    }
    problems.removeDuplicates();
    return problems;
}

QString effectValuesText(const EffectEntry& entry, const EffectValues& values) {
    QStringList parts;
    for (const Parameter& p : entry.dialog.parameters) {
        if (!values.contains(p.key))
            continue;
        const QVariant value = values.variant(p.key);
        QString name = p.caption.endsWith(u':') ? p.caption.chopped(1) : p.caption;
        if (p.kind == ControlKind::Band)
            name = p.text + u' ' + name;
        const QString shown = p.kind == ControlKind::List ? p.items.value(value.toInt(), value.toString())
                              : p.kind == ControlKind::Check
                                  ? (value.toInt() ? QStringLiteral("on") : QStringLiteral("off"))
                                  : QString::number(value.toDouble());
        parts << name + QStringLiteral(": ") + shown;
    }
    return parts.join(QStringLiteral(", "));
}

QStringList equalizerArguments(float bandwidthQ) {
    static const QStringList frequencies = {"24",   "34",   "48",   "68",   "96",    "136",  "193",
                                            "273",  "386",  "546",  "772",  "1100",  "1500", "2200",
                                            "3100", "4400", "6200", "8700", "12400", "17500"};
    const QString q = QString::asprintf("%.02f", double(bandwidthQ));
    QStringList e;
    for (const QString& frequency : frequencies)
        e << "equalizer" << frequency << q << q; // the bandwidth stands where a gain would
    return e;
}

QString noiseNotRemovedMessage() {
    return QStringLiteral(
        "The noise could not be removed. Select a stretch that holds noise only, then try again.");
}

EditPlan buildNoiseReductionPlan(const EditState& s, const ResultNames& names, float level) {
    const QString profile = pathInFolder(s.workFolder, QStringLiteral("noise.prof"));
    const QString sample = names.path("Selection"), result = names.path();
    EditPlan edit;
    edit.plan.steps = {
        step::DeleteFile{profile},
        step::Run{Tool::FFmpeg,
                  segmentArguments(s.track, s.seg.sStartSelection, s.seg.sDurationSelection, sample)},
        step::Run{Tool::Sox, {sample, "-n", "noiseprof", profile}},
        step::DeleteFile{result},
        // The result may bear the track's own name (an edit of the same second
        // made it); the run then reads the track from where it was set aside.
        step::Run{
            .tool = Tool::Sox,
            .arguments = {s.track, result, "noisered", profile, QString::asprintf("%.02f", double(level))},
            .writes = result},
        step::RequireFile{result, noiseNotRemovedMessage()},
        step::RequireAudio{result, QStringLiteral("The noise reduction")},
        step::ProbeDuration{result},
    };
    edit.result = result;
    edit.label = QStringLiteral("Noise reduction");
    edit.replay = notReplayable::noiseSample();
    edit.deleteAfterAdopting = {sample, profile};
    return edit;
}
