#include "RecipePlans.h"

#include "document/ImportPlans.h"
#include "effects/EffectCatalogue.h"
#include "plans/PrintedFigures.h"
#include "session/WorkFolder.h"
#include "tools/ToolRunner.h"

#include <QFileInfo>

EditPlan buildStepPlan(const RecipeStep& step, const EditState& s, const ResultNames& names) {
    switch (step.kind) {
    case RecipeStep::Kind::Effect:
        if (const EffectEntry* entry = findEffect(step.effect))
            return buildEffectPlan(s, names, entry->arguments(step.values));
        return {};
    case RecipeStep::Kind::InsertSilence:
        return buildSilenceInsertPlan(s, names, step.place, step.milliseconds);
    case RecipeStep::Kind::TrimSilence:
        return buildSilenceTrimPlan(s, names, step.mode, step.milliseconds);
    }
    return {};
}

namespace {
// Appends a plan's steps but the probes whose durations are only drawn,
// noting each tool run's stage. A probe that a check reads (the room an
// import needs) stays.
void append(RecipePlan& recipePlan, const Plan& plan, int stage) {
    for (std::size_t i = 0; i < plan.steps.size(); ++i) {
        const Step& s = plan.steps[i];
        const bool checked =
            i + 1 < plan.steps.size() && std::holds_alternative<step::Check>(plan.steps[i + 1]);
        if (std::holds_alternative<step::ProbeDuration>(s) && !checked)
            continue;
        if (std::holds_alternative<step::Run>(s) || std::holds_alternative<step::ProbeDuration>(s))
            recipePlan.runStages.append(stage);
        recipePlan.plan.steps.push_back(s);
    }
}
} // namespace

RecipePlan buildRecipePlan(const Recipe& recipe, const QString& input, const QString& folder,
                           const QString& output, const QString& shownOutput) {
    RecipePlan result;
    QString track = ResultNames(folder, QStringLiteral("opened")).path();
    result.stages.append(QStringLiteral("Opening %1").arg(QFileInfo(input).fileName()));
    append(result, buildImportPlan(input, track), 0);
    // Every step keeps its result until the file is done: once the opened
    // track is there, the work folder must take one more file of about its
    // length per step, besides the 50 MB kept free. (The last probe is the
    // input's, which the import's own room check read.)
    if (const qint64 steps = recipe.steps.size(); steps > 0)
        result.plan.steps.push_back(step::Check{[folder, steps](const PlanOutcome& sofar) {
            return sofar.seconds
                       ? roomForBytesProblem(folder, steps * workingWavBytes(double(*sofar.seconds)))
                       : QString();
        }});
    for (const RecipeStep& step : recipe.steps) {
        const int stage = int(result.stages.size());
        const ResultNames names(folder, QStringLiteral("step%1").arg(stage));
        const EditState state{folder, track, {}, {}, 0, 0, 0};
        const EditPlan edit = buildStepPlan(step, state, names);
        result.stages.append(step.label);
        append(result, edit.plan, stage);
        track = edit.result;
    }
    const auto arguments = exporting::exportArguments(track, recipe.exportChoice, output);
    if (!arguments) {
        result.problem =
            QStringLiteral("The export setting (bit rate %1) cannot be exported: choose another.")
                .arg(exporting::bitRates().value(recipe.exportChoice.bitRate));
        return result;
    }
    const int stage = int(result.stages.size());
    result.stages.append(QStringLiteral("Exporting %1")
                             .arg(QFileInfo(shownOutput.isEmpty() ? output : shownOutput).fileName()));
    append(result, exporting::buildExportPlan(output, *arguments), stage);
    return result;
}

QString shellQuoted(const QString& text) {
    QString quoted = text;
    quoted.replace(u'\'', QStringLiteral("'\\''"));
    return u'\'' + quoted + u'\'';
}

namespace {
// Stand-ins for the script's variables while its plan is built: the input
// file, the work folder and the output file. Control characters, so that no
// argument of a tool could hold one by chance.
const QString InputMark = QStringLiteral("\x01I"), WorkMark = QStringLiteral("\x01W"),
              OutputMark = QStringLiteral("\x01O"), TemporaryMark = QStringLiteral("\x01T");

// The script's variable that holds a figure a run printed.
QString figureVariable(const QString& name) {
    return QStringLiteral("figure_") + name;
}

// An argument as one shell word: the stand-ins and the figures' marks become their variables in
// double quotes, everything else stays literal in single quotes.
QString shellWord(const QString& argument) {
    QString word, literal;
    auto flush = [&] {
        if (!literal.isEmpty())
            word += shellQuoted(literal);
        literal.clear();
    };
    for (qsizetype i = 0; i < argument.size(); ++i) {
        if (const qsizetype end = argument.indexOf(QChar(FigureMarkClose), i);
            argument.at(i) == QChar(FigureMarkOpen) && end > i) {
            flush();
            word += QStringLiteral("\"$%1\"").arg(figureVariable(argument.mid(i + 1, end - i - 1)));
            i = end;
            continue;
        }
        const QString pair = argument.mid(i, 2);
        const QString variable = pair == InputMark       ? QStringLiteral("\"$input\"")
                                 : pair == WorkMark      ? QStringLiteral("\"$work\"")
                                 : pair == OutputMark    ? QStringLiteral("\"$output\"")
                                 : pair == TemporaryMark ? QStringLiteral("\"$part\"")
                                                         : QString();
        if (variable.isEmpty()) {
            literal += argument.at(i);
            continue;
        }
        flush();
        word += variable;
        ++i;
    }
    flush();
    return word.isEmpty() ? QStringLiteral("''") : word;
}

QString exportDescription(const exporting::Choice& c) {
    return QStringLiteral("%1, %2 Hz, %3, %4")
        .arg(exporting::formats().value(c.format), exporting::sampleRates().value(c.sampleRate),
             exporting::channels().value(c.channels), exporting::bitRates().value(c.bitRate));
}

const char* const Preamble = R"sh(set -eu
if [ $# -lt 1 ] || [ $# -gt 2 ]; then
    echo "usage: sh $0 INPUT [OUTPUT]" >&2
    exit 2
fi
SOX=${SOX:-sox}
FFMPEG=${FFMPEG:-ffmpeg}
# sox's repeatable mode, as in the editor: its dither is the same on every run.
SOX_OPTS="%SOXOPTS% ${SOX_OPTS:-}"
export SOX_OPTS
input=$1
if [ $# -eq 2 ]; then
    output=$2
    if [ -e "$output" ]; then
        echo "$output exists already: it is never overwritten." >&2
        exit 1
    fi
else
    folder=$(dirname -- "$input")
    name=$(basename -- "$input")
    case $name in ?*.*) name=${name%.*} ;; esac
    output="$folder/$name.%EXT%"
    n=2
    while [ -e "$output" ]; do
        output="$folder/$name ($n).%EXT%"
        n=$((n + 1))
    done
fi
work=$(mktemp -d "${TMPDIR:-/tmp}/tanselo-recipe.XXXXXX")
# The export is written under a name of this run's own beside the output and
# takes its name only when it is complete: another run writing there at the
# same time is neither overwritten nor removed by this one.
part="$(dirname -- "$output")/.tanselo-$$-$(basename -- "$output")"
# The work files and the unfinished export always go; nothing else does.
trap 'rm -rf "$work"; rm -f "$part"' EXIT
trap 'exit 1' HUP INT TERM
# A figure the last run printed as "name" : "value" (ffmpeg's summaries), the
# last of them where there are several.
figure() {
    sed -n "s/.*\"$1\"[[:space:]]*:[[:space:]]*\"\([^\"]*\)\".*/\1/p" "$work/said.txt" | tail -n 1
}
# Runs one tool, showing what it said only when it fails.
run() {
    "$@" < /dev/null > "$work/said.txt" 2>&1 || {
        cat "$work/said.txt" >&2
        echo "$stage failed." >&2
        exit 1
    }
}
)sh";
// The finished export takes its name: ln never replaces a file, so of two
// runs that chose one name the later one moves on to the next " (n)", or,
// with the output named on the command line, stops.
const char* const Claim = R"sh(
# Naming the output
until ln -- "$part" "$output" 2>/dev/null; do
    if [ ! -e "$output" ]; then
        echo "$output could not be written." >&2
        exit 1
    fi
    if [ $# -eq 2 ]; then
        echo "$output exists already: it is never overwritten." >&2
        exit 1
    fi
    output="$folder/$name ($n).%EXT%"
    n=$((n + 1))
done
rm -f -- "$part"
echo "$output"
)sh";
} // namespace

QString recipeScript(const Recipe& recipe) {
    const QString extension = exportExtension(recipe);
    const RecipePlan plan = buildRecipePlan(recipe, InputMark, WorkMark, TemporaryMark, OutputMark);
    QString script = QStringLiteral("#!/bin/sh\n# A Tanselo recipe: ");
    QStringList labels;
    for (const RecipeStep& step : recipe.steps)
        labels.append(step.label);
    script += labels.isEmpty() ? QStringLiteral("no steps") : labels.join(QStringLiteral(", "));
    script += QStringLiteral(", exported as %1.\n").arg(exportDescription(recipe.exportChoice));
    script += QStringLiteral("# Usage: sh %1 INPUT [OUTPUT]\n"
                             "# Without OUTPUT the result goes beside INPUT, named after it, with \" (2)\"\n"
                             "# and so on when that name is taken; nothing is ever overwritten. The\n"
                             "# tools are sox and ffmpeg from the PATH, or $SOX and $FFMPEG.\n")
                  .arg(QStringLiteral("recipe.sh"));
    script += QString::fromUtf8(Preamble)
                  .replace(QStringLiteral("%EXT%"), extension)
                  .replace(QStringLiteral("%SOXOPTS%"), repeatableSoxOptions());
    int run = 0, stage = -1;
    for (const Step& s : plan.plan.steps) {
        if (const auto* r = std::get_if<step::Run>(&s)) {
            const int runStage = plan.runStages.value(run++);
            if (runStage != stage) {
                stage = runStage;
                QString name = plan.stages.value(stage);
                name.replace(InputMark, QStringLiteral("the input"))
                    .replace(OutputMark, QStringLiteral("the output"))
                    .replace(TemporaryMark, QStringLiteral("the output"));
                script += QStringLiteral("\n# %1\nstage=%2\n").arg(name, shellQuoted(name));
            }
            script +=
                r->tool == Tool::Sox ? QStringLiteral("run \"$SOX\"") : QStringLiteral("run \"$FFMPEG\"");
            for (const QString& argument : r->arguments)
                script += u' ' + shellWord(argument);
            script += u'\n';
        } else if (const auto* read = std::get_if<step::ReadFigures>(&s); read && !read->alert.isEmpty()) {
            // The figures a later run is given, checked as the editor checks
            // them: plain numbers only.
            for (const QString& name : read->names)
                script += QStringLiteral("%1=$(figure %2)\n"
                                         "case $%1 in ''|*[!0-9.+-]*) echo %3 >&2; exit 1 ;; esac\n")
                              .arg(figureVariable(name), name, shellQuoted(read->alert));
        } else if (const auto* required = std::get_if<step::RequireFile>(&s)) {
            script += QStringLiteral("[ -e %1 ] || { echo \"$stage wrote nothing.\" >&2; exit 1; }\n")
                          .arg(shellWord(required->path));
        }
    }
    script += QString::fromUtf8(Claim).replace(QStringLiteral("%EXT%"), extension);
    return script;
}
