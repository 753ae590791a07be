#include "EffectReference.h"

#include "EffectCatalogue.h"
#include "plans/PrintedFigures.h"

#include <QSet>

namespace {
QString number(int n) {
    return n < 0 ? QStringLiteral("−%1").arg(-qint64(n)) : QString::number(n);
}

QString caption(const Parameter& p) {
    QString c = p.caption.endsWith(u':') ? p.caption.chopped(1) : p.caption;
    return p.kind == ControlKind::Band ? c + ' ' + p.text : c;
}

QString rangeText(const Parameter& p) {
    switch (p.kind) {
    case ControlKind::Slider:
    case ControlKind::Band:
        return number(p.minimum) + " … " + number(p.maximum);
    case ControlKind::List:
        return p.items.join(QStringLiteral(", "));
    case ControlKind::Check:
        return QStringLiteral("off, on");
    case ControlKind::Text:
        break;
    }
    return QStringLiteral("typed");
}

QString startText(const Parameter& p) {
    switch (p.kind) {
    case ControlKind::Slider:
    case ControlKind::Band:
        return number(p.start);
    case ControlKind::List:
        return p.items.value(p.start);
    case ControlKind::Check:
        return p.start ? QStringLiteral("on") : QStringLiteral("off");
    case ControlKind::Text:
        break;
    }
    return '"' + p.text + '"';
}

QString labelText(const Parameter& p) {
    if (p.kind != ControlKind::Slider && p.kind != ControlKind::Band)
        return {};
    if (p.format == QLatin1String("%d"))
        return p.times == 1 ? QStringLiteral("as is") : QStringLiteral("× %1").arg(p.times);
    const QString shown = QStringLiteral("`%1`").arg(p.format);
    return p.divisor == 1 ? QStringLiteral("as is, ") + shown
                          : QStringLiteral("÷ %1, ").arg(p.divisor, 0, 'f', 0) + shown;
}

QString readingText(const Parameter& p) {
    QString from;
    switch (p.kind) {
    case ControlKind::Slider:
    case ControlKind::Band:
        from = p.fromSlider ? QStringLiteral("the slider") : QStringLiteral("the label");
        break;
    case ControlKind::Text:
        from = QStringLiteral("the field");
        break;
    case ControlKind::List:
        from = QStringLiteral("the index");
        break;
    case ControlKind::Check:
        from = QStringLiteral("0 or 1");
        break;
    }
    return QStringLiteral("`%1`, %2, from %3").arg(p.key, typeName(p.type), from);
}

QString ruleText(Check::Rule rule) {
    switch (rule) {
    case Check::Zero:
        return QStringLiteral("is 0");
    case Check::Negative:
        return QStringLiteral("is below 0");
    case Check::NotPositive:
        return QStringLiteral("is not above 0");
    }
    return {};
}

QString argumentsText(const EffectEntry& entry) {
    const EffectArguments a = entry.arguments(startValues(entry.dialog));
    if (a.steps) { // runs of its own: each run's words but the paths
        QStringList runs;
        for (const PlannedRun& run : plannedRuns({a.steps("/in.wav", "/out.wav", "/in.wav")})) {
            QStringList words;
            for (QString word : run.arguments) {
                // A figure of an earlier run stands as {name}.
                for (const QString& name : markedFigures(word))
                    word.replace(figureMark(name), u'{' + name + u'}');
                words << (word.startsWith(u'/') ? QStringLiteral("…") : word);
            }
            runs << toolName(run.tool) + QStringLiteral(" runs `") + words.join(u' ') + u'`';
        }
        return runs.join(QStringLiteral(", then "));
    }
    const QString effect = a.effect.size() > 12 ? a.effect.mid(0, 8).join(' ') + " …" : a.effect.join(' ');
    if (a.global.isEmpty())
        return '`' + effect + '`';
    return '`' + a.global.join(' ') + "` before the input" +
           (effect.isEmpty() ? QString() : ", `" + effect + '`');
}

void appendTable(QString& out, const DialogDeclaration& dialog) {
    out += QStringLiteral("\n| Control | Widget | Range | Start | Label | Value | Why |\n"
                          "|---|---|---|---|---|---|---|\n");
    for (const Parameter& p : dialog.parameters)
        out += QStringLiteral("| %1 | `%2` | %3 | %4 | %5 | %6 | %7 |\n")
                   .arg(caption(p), p.widgetName(), rangeText(p), startText(p), labelText(p), readingText(p),
                        p.why);
}

void describeDialog(QString& out, const DialogDeclaration& dialog, const std::vector<EffectEntry>& users) {
    out += QStringLiteral("\n## %1 (`%2`)\n\n").arg(dialog.title, dialog.name);
    for (const EffectEntry& entry : users)
        out += QStringLiteral("- %1%2: %3 at the start values.\n")
                   .arg(entry.title, entry.selection ? QString() : QStringLiteral(" (whole track only)"),
                        (entry.arguments(startValues(entry.dialog)).steps ? QString()
                                                                          : QStringLiteral("sox receives ")) +
                            argumentsText(entry));
    if (!dialog.question.isEmpty())
        out += QStringLiteral("\nIt asks: “%1”\n").arg(dialog.question);
    if (dialog.parameters.empty())
        return;
    appendTable(out, dialog);
    for (const Check& check : dialog.checks)
        out += QStringLiteral("\nOK refuses with “%1” when `%2` %3.")
                   .arg(check.message, check.key, ruleText(check.rule));
    if (dialog.checks.size() > 1)
        out += QStringLiteral(" The checks run in this order; the first that fails is told.");
    if (!dialog.checks.empty())
        out += '\n';
}
} // namespace

QString effectsReference() {
    QString out = QStringLiteral(
        "# Effects: dialogs, controls, ranges and start values\n\n"
        "<!-- Written from the effect catalogue (src/core/effects/EffectCatalogue.cpp) by `make "
        "effects-doc`; "
        "the test suite fails when this file and the catalogue differ. -->\n\n"
        "Every effect is one `sox` run. Each slider's range was chosen from `man sox` so that sox accepts "
        "every value the slider can reach, and checked by running sox at both ends (the suite does so on "
        "every run); the start value gives a moderate, audible change. Where a slider counts in a finer unit "
        "than its label shows, the label scales it, and unless the Value column says otherwise the label's "
        "text is what the effect receives. Text fields are read leniently: leading digits count, the rest is "
        "ignored.\n");
    QSet<QString> described;
    std::vector<const DialogDeclaration*> dialogs;
    for (const EffectEntry& entry : effectCatalogue())
        if (!entry.dialog.isEmpty() && !described.contains(entry.dialog.name)) {
            described.insert(entry.dialog.name);
            dialogs.push_back(&entry.dialog);
        }
    for (const DialogDeclaration* dialog : dialogs) {
        std::vector<EffectEntry> users;
        for (const EffectEntry& entry : effectCatalogue())
            if (entry.dialog.name == dialog->name)
                users.push_back(entry);
        describeDialog(out, *dialog, users);
    }
    out += QStringLiteral("\n## Without a dialog\n\n");
    for (const EffectEntry& entry : effectCatalogue())
        if (entry.dialog.isEmpty())
            out += QStringLiteral("- %1: sox receives %2.\n").arg(entry.title, argumentsText(entry));
    out += QStringLiteral("\n## Noise reduction\n\nFirst `%1` asks: “%2” Then:\n")
               .arg(askNoiseSelectedDialog().name, askNoiseSelectedDialog().question);
    appendTable(out, noiseReductionDialog());
    out += QStringLiteral(
        "\nLengths: most effects keep the length of what they process. Speed and tempo divide it by their "
        "factor; the echo adds its delay and the chorus its delay and depth (sox lets their tails ring out); "
        "noise reduction can end a few hundredths of a second short.\n");
    return out;
}
