#include "ToolLog.h"

#include "app/PlanRunner.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>

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
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(text);
    layout->addWidget(buttons);
    dialog.exec();
}
