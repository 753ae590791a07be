#include "PrintedFigures.h"

#include <QRegularExpression>

QString figureMark(const QString& name) {
    return QChar(FigureMarkOpen) + name + QChar(FigureMarkClose);
}

QStringList markedFigures(const QString& argument) {
    static const QRegularExpression mark(QStringLiteral("\\x02([^\\x02\\x03]*)\\x03"));
    QStringList names;
    for (const QRegularExpressionMatch& m : mark.globalMatch(argument))
        names << m.captured(1);
    return names;
}

QStringList fillFigures(QStringList arguments, const QHash<QString, QString>& figures) {
    for (QString& argument : arguments)
        for (const QString& name : markedFigures(argument))
            if (const auto figure = figures.constFind(name); figure != figures.cend())
                argument.replace(figureMark(name), *figure);
    return arguments;
}

QHash<QString, QString> readPrintedFigures(const QString& output, const QStringList& names) {
    QHash<QString, QString> figures;
    for (const QString& name : names) {
        const QRegularExpression line(
            QStringLiteral("\"%1\"\\s*:\\s*\"([^\"\\n]*)\"").arg(QRegularExpression::escape(name)));
        QString last;
        bool found = false;
        for (const QRegularExpressionMatch& m : line.globalMatch(output)) {
            last = m.captured(1);
            found = true;
        }
        if (found)
            figures.insert(name, last);
    }
    return figures;
}

bool isPlainNumber(const QString& figure) {
    static const QRegularExpression plain(QStringLiteral("^[0-9.+-]+$"));
    return plain.match(figure).hasMatch();
}
