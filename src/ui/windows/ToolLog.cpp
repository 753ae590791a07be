#include "ToolLog.h"

#include "plans/PlanRunner.h"
#include "widgets/Alerts.h"

#include <QDialog>
#include <QFontDatabase>
#include <QPlainTextEdit>

void showToolLog(QWidget* parent, const PlanRunner& runner) {
    QDialog dialog(parent);
    dialog.setWindowTitle(QObject::tr("Tool Runs"));
    dialog.resize(900, 500);
    auto* text = new QPlainTextEdit(&dialog);
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setPlainText(runner.runs().isEmpty() ? QObject::tr("No tool has run yet.")
                                               : toolLogText(runner.runs()));
    text->moveCursor(QTextCursor::End);
    showWithCloseButton(dialog, text);
}
