#include "Recipe.h"

#include "effects/EffectCatalogue.h"
#include "history/VersionHistory.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <unistd.h>

Recipe recipeOf(const VersionHistory& history, const exporting::Choice& exportChoice) {
    Recipe recipe;
    recipe.exportChoice = exportChoice;
    const qsizetype current = currentVersionRow(history);
    for (qsizetype i = 1; i <= current; ++i) {
        const Version& version = history.versions().at(i);
        if (version.replay.step)
            recipe.steps.append(*version.replay.step);
        else
            recipe.skipped.append(
                {version.label, version.replay.whyNot.isEmpty()
                                    ? QStringLiteral("It cannot be done again to another file.")
                                    : version.replay.whyNot});
    }
    return recipe;
}

QString exportExtension(const Recipe& recipe) {
    return exporting::defaultSuffix(recipe.exportChoice.format);
}

namespace {
// The words a recipe file uses for the kinds of step and value.
const QString Effect = QStringLiteral("effect"), InsertSilence = QStringLiteral("insert silence"),
              TrimSilence = QStringLiteral("trim silence");
const QString Real = QStringLiteral("real"), Whole = QStringLiteral("whole"),
              Unsigned = QStringLiteral("unsigned");
const QString FileKind = QStringLiteral("Tanselo recipe");

QString kindWord(RecipeStep::Kind kind) {
    switch (kind) {
    case RecipeStep::Kind::Effect:
        return Effect;
    case RecipeStep::Kind::InsertSilence:
        return InsertSilence;
    case RecipeStep::Kind::TrimSilence:
        return TrimSilence;
    }
    return {};
}

QJsonObject valuesJson(const EffectValues& values) {
    QJsonObject object;
    for (const QString& key : values.keys()) {
        const QVariant value = values.variant(key);
        switch (value.typeId()) {
        case QMetaType::Float:
            object[key] = QJsonObject{{Real, double(value.toFloat())}};
            break;
        case QMetaType::LongLong:
            object[key] = QJsonObject{{Whole, value.toLongLong()}};
            break;
        default:
            object[key] = QJsonObject{{Unsigned, double(value.toULongLong())}};
        }
    }
    return object;
}

QJsonObject stepJson(const RecipeStep& step) {
    QJsonObject object{{QStringLiteral("kind"), kindWord(step.kind)}, {QStringLiteral("label"), step.label}};
    switch (step.kind) {
    case RecipeStep::Kind::Effect:
        object[QStringLiteral("effect")] = step.effect;
        object[QStringLiteral("values")] = valuesJson(step.values);
        break;
    case RecipeStep::Kind::InsertSilence:
        object[QStringLiteral("place")] =
            step.place == SilencePlace::End ? QStringLiteral("end") : QStringLiteral("start");
        object[QStringLiteral("milliseconds")] = double(step.milliseconds);
        break;
    case RecipeStep::Kind::TrimSilence:
        object[QStringLiteral("mode")] = double(step.mode);
        object[QStringLiteral("milliseconds")] = double(step.milliseconds);
        break;
    }
    return object;
}

// Reading stops at the first problem, which `problem` keeps.
struct Reader {
    QString problem;

    bool fail(const QString& why) {
        if (problem.isEmpty())
            problem = why;
        return false;
    }
    std::optional<quint64> count(const QJsonObject& object, const QString& key, const QString& where) {
        const QJsonValue value = object.value(key);
        const double number = value.toDouble(-1);
        if (!value.isDouble() || number < 0 || number != std::floor(number) || number > 9.0e15) {
            fail(QStringLiteral("%1 has no whole number \"%2\".").arg(where, key));
            return std::nullopt;
        }
        return quint64(number);
    }
    std::optional<EffectValues> values(const EffectEntry& entry, const QJsonObject& object,
                                       const QString& where) {
        EffectValues values;
        for (const Parameter& parameter : entry.dialog.parameters) {
            const QJsonValue held = object.value(parameter.key)
                                        .toObject()
                                        .value(parameter.type == ValueType::Real    ? Real
                                               : parameter.type == ValueType::Whole ? Whole
                                                                                    : Unsigned);
            if (!held.isDouble()) {
                fail(QStringLiteral("%1 has no %2 value \"%3\".")
                         .arg(where, typeName(parameter.type), parameter.key));
                return std::nullopt;
            }
            if (parameter.type == ValueType::Real)
                values.set(parameter.key, float(held.toDouble()));
            else if (parameter.type == ValueType::Whole)
                values.set(parameter.key, qint64(held.toDouble()));
            else
                values.set(parameter.key, quint64(held.toDouble()));
        }
        if (object.size() != values.keys().size()) {
            fail(QStringLiteral("%1 holds values the effect does not have.").arg(where));
            return std::nullopt;
        }
        return values;
    }
    std::optional<RecipeStep> step(const QJsonObject& object, const QString& where) {
        RecipeStep step;
        step.label = object.value(QStringLiteral("label")).toString();
        if (step.label.isEmpty()) {
            fail(QStringLiteral("%1 has no label.").arg(where));
            return std::nullopt;
        }
        const QString kind = object.value(QStringLiteral("kind")).toString();
        if (kind == Effect) {
            step.effect = object.value(QStringLiteral("effect")).toString();
            const EffectEntry* entry = findEffect(step.effect);
            if (!entry) {
                fail(QStringLiteral("%1 names an effect the editor does not have: \"%2\".")
                         .arg(where, step.effect));
                return std::nullopt;
            }
            const auto read = values(*entry, object.value(QStringLiteral("values")).toObject(), where);
            if (!read)
                return std::nullopt;
            step.values = *read;
            return step;
        }
        const auto milliseconds = count(object, QStringLiteral("milliseconds"), where);
        if (!milliseconds)
            return std::nullopt;
        step.milliseconds = *milliseconds;
        if (kind == InsertSilence) {
            step.kind = RecipeStep::Kind::InsertSilence;
            const QString place = object.value(QStringLiteral("place")).toString();
            if (place != QStringLiteral("start") && place != QStringLiteral("end")) {
                fail(QStringLiteral("%1 inserts silence neither at the start nor at the end.").arg(where));
                return std::nullopt;
            }
            step.place = place == QStringLiteral("end") ? SilencePlace::End : SilencePlace::Start;
            return step;
        }
        if (kind == TrimSilence) {
            step.kind = RecipeStep::Kind::TrimSilence;
            const auto mode = count(object, QStringLiteral("mode"), where);
            if (!mode || *mode < 1 || *mode > 3) {
                fail(QStringLiteral("%1 trims silence in no known way.").arg(where));
                return std::nullopt;
            }
            step.mode = *mode;
            return step;
        }
        fail(QStringLiteral("%1 is of no known kind: \"%2\".").arg(where, kind));
        return std::nullopt;
    }
    // The index of `text` in one of the export dialog's lists.
    int item(const QJsonObject& object, const QString& key, const QStringList& list) {
        const int index = int(list.indexOf(object.value(key).toString()));
        if (index < 0)
            fail(QStringLiteral("The export setting \"%1\" is none of %2.")
                     .arg(key, list.join(QStringLiteral(", "))));
        return index;
    }
};
} // namespace

QByteArray recipeJson(const Recipe& recipe) {
    QJsonArray steps, skipped;
    for (const RecipeStep& step : recipe.steps)
        steps.append(stepJson(step));
    for (const SkippedStep& step : recipe.skipped)
        skipped.append(
            QJsonObject{{QStringLiteral("label"), step.label}, {QStringLiteral("reason"), step.reason}});
    const exporting::Choice& c = recipe.exportChoice;
    const QJsonObject exportSetting{
        {QStringLiteral("format"), exporting::formats().value(c.format)},
        {QStringLiteral("sample rate"), exporting::sampleRates().value(c.sampleRate)},
        {QStringLiteral("channels"), exporting::channels().value(c.channels)},
        {QStringLiteral("bit rate"), exporting::bitRates().value(c.bitRate)}};
    const QJsonObject root{{QStringLiteral("kind"), FileKind},
                           {QStringLiteral("version"), 1},
                           {QStringLiteral("steps"), steps},
                           {QStringLiteral("skipped"), skipped},
                           {QStringLiteral("export"), exportSetting}};
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

QString recipeFileProblem(const QString& path, const QString& workFolder) {
    if (!exporting::isInsideFolder(path, workFolder))
        return {};
    return QStringLiteral("\"%1\" is inside Tanselo's work folder, %2, which holds the files of the open "
                          "tracks and is emptied every time Tanselo starts: saving there could destroy a "
                          "track and the file would be lost. Choose another folder.")
        .arg(path, workFolder);
}

std::optional<Recipe> recipeFromJson(const QByteArray& json, QString* error) {
    QJsonParseError parsing;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parsing);
    const QJsonObject root = document.object();
    Reader read;
    Recipe recipe;
    if (parsing.error != QJsonParseError::NoError)
        read.fail(QStringLiteral("It is not JSON: %1 (at character %2).")
                      .arg(parsing.errorString())
                      .arg(parsing.offset));
    else if (root.value(QStringLiteral("kind")).toString() != FileKind ||
             root.value(QStringLiteral("version")).toInt() != 1)
        read.fail(QStringLiteral("It is not a recipe saved by this editor."));
    const QJsonArray steps = root.value(QStringLiteral("steps")).toArray();
    for (qsizetype i = 0; read.problem.isEmpty() && i < steps.size(); ++i) {
        if (auto step = read.step(steps.at(i).toObject(), QStringLiteral("Step %1").arg(i + 1)))
            recipe.steps.append(*step);
    }
    for (const QJsonValue& value : root.value(QStringLiteral("skipped")).toArray())
        recipe.skipped.append(
            {value[QStringLiteral("label")].toString(), value[QStringLiteral("reason")].toString()});
    if (read.problem.isEmpty()) {
        const QJsonObject setting = root.value(QStringLiteral("export")).toObject();
        recipe.exportChoice = {read.item(setting, QStringLiteral("format"), exporting::formats()),
                               read.item(setting, QStringLiteral("sample rate"), exporting::sampleRates()),
                               read.item(setting, QStringLiteral("channels"), exporting::channels()),
                               read.item(setting, QStringLiteral("bit rate"), exporting::bitRates())};
    }
    if (!read.problem.isEmpty()) {
        if (error)
            *error = read.problem;
        return std::nullopt;
    }
    return recipe;
}

QStringList outputPaths(const QStringList& inputs, const QString& folder, const QString& extension,
                        const std::function<bool(const QString&)>& exists) {
    QStringList outputs;
    for (const QString& input : inputs) {
        const QString base = QFileInfo(input).completeBaseName();
        QString path = QStringLiteral("%1/%2.%3").arg(folder, base, extension);
        for (int n = 2; exists(path) || outputs.contains(path) || inputs.contains(path); ++n)
            path = QStringLiteral("%1/%2 (%3).%4").arg(folder, base).arg(n).arg(extension);
        outputs.append(path);
    }
    return outputs;
}

QString temporaryOutputPath(const QString& wanted, int index) {
    const QFileInfo info(wanted);
    return info.dir().filePath(QStringLiteral(".%1.tanselo-%2-%3.%4")
                                   .arg(info.completeBaseName())
                                   .arg(QCoreApplication::applicationPid())
                                   .arg(index)
                                   .arg(info.suffix()));
}

QString claimOutputName(const QString& temporary, const QString& wanted, QString* error) {
    const QFileInfo info(wanted);
    // "name (3)" goes on with "name (4)"; "name" with "name (2)".
    static const QRegularExpression numbered(QStringLiteral("^(.*) \\((\\d+)\\)$"));
    QString base = info.completeBaseName();
    int n = 1;
    if (const QRegularExpressionMatch match = numbered.match(base); match.hasMatch()) {
        base = match.captured(1);
        n = match.captured(2).toInt();
    }
    const QString suffix = info.suffix().isEmpty() ? QString() : u'.' + info.suffix();
    QString path = wanted;
    for (int tries = 0; tries < 10000; ++tries) {
        if (::link(QFile::encodeName(temporary).constData(), QFile::encodeName(path).constData()) == 0) {
            QFile::remove(temporary);
            return path;
        }
        if (errno != EEXIST) {
            *error = QStringLiteral("“%1” could not be named “%2”: %3.")
                         .arg(QFileInfo(temporary).fileName(), QFileInfo(path).fileName(),
                              QString::fromLocal8Bit(std::strerror(errno)));
            return {};
        }
        path = info.dir().filePath(QStringLiteral("%1 (%2)%3").arg(base).arg(++n).arg(suffix));
    }
    *error = QStringLiteral("Every name like “%1” is taken.").arg(info.fileName());
    return {};
}
