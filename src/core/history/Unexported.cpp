#include "Unexported.h"

namespace {
QString quoted(const QString& source) {
    return QStringLiteral("“%1”").arg(source);
}

// "“a.mp3”, “b.wav” and “c.m4a”"
QString listed(const QStringList& sources) {
    QStringList names;
    for (const QString& source : sources)
        names << quoted(source);
    if (names.size() < 2)
        return names.join(QString());
    const QString last = names.takeLast();
    return names.join(QStringLiteral(", ")) + QStringLiteral(" and ") + last;
}
} // namespace

QString closingQuestion(const QStringList& sources) {
    if (sources.size() == 1)
        return QStringLiteral("Export the changes to %1 before closing?").arg(quoted(sources.first()));
    return QStringLiteral("Export the changes to %1 tracks before quitting?").arg(sources.size());
}

QString closingDetails(const QStringList& sources) {
    if (sources.size() == 1)
        return QStringLiteral("The versions made since it was opened or last exported are lost when it "
                              "closes.");
    return QStringLiteral("%1 hold versions made since they were opened or last exported, which are lost "
                          "when Tanselo quits. Export… exports each in turn.")
        .arg(listed(sources));
}

QStringList closingButtons() {
    return {QStringLiteral("Export…"), QStringLiteral("Close Without Exporting"), QStringLiteral("Cancel")};
}

ClosingAnswer closingAnswer(int pressed) {
    switch (pressed) {
    case 0:
        return ClosingAnswer::Export;
    case 1:
        return ClosingAnswer::CloseWithoutExporting;
    default:
        return ClosingAnswer::Cancel;
    }
}
