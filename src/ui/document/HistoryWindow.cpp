#include "HistoryWindow.h"

#include "Document.h"
#include "history/VersionHistory.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

HistoryWindow::HistoryWindow(Document* document) : QDialog(document), m_document(document) {
    setObjectName(QStringLiteral("historyWindow"));
    setModal(false);
    resize(420, 320);

    tableVersions = new QTreeWidget(this);
    tableVersions->setObjectName(QStringLiteral("tableVersions"));
    tableVersions->setAccessibleName(tr("Versions"));
    tableVersions->setColumnCount(3);
    tableVersions->setHeaderLabels({QString(), tr("Version"), tr("Made")});
    tableVersions->setRootIsDecorated(false);
    tableVersions->setUniformRowHeights(true);
    tableVersions->setAllColumnsShowFocus(true);
    tableVersions->setSelectionMode(QAbstractItemView::SingleSelection);
    tableVersions->setEditTriggers(QAbstractItemView::NoEditTriggers);
    QHeaderView* header = tableVersions->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(ColumnMarker, QHeaderView::ResizeToContents);
    header->setSectionResizeMode(ColumnLabel, QHeaderView::Stretch);
    header->setSectionResizeMode(ColumnMade, QHeaderView::ResizeToContents);
    tableVersions->setToolTip(tr("Click a version to go back or forward to it"));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    // Enter in the list goes to a version and the list passes the key on:
    // Close must not be the default button that takes it, or the window
    // would close under the user moving through the versions.
    QPushButton* close = buttons->button(QDialogButtonBox::Close);
    close->setAutoDefault(false);
    close->setDefault(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tableVersions);
    layout->addWidget(buttons);

    // A click chooses a row, and so do Enter and a double click.
    connect(tableVersions, &QTreeWidget::itemClicked, this, &HistoryWindow::choose);
    connect(tableVersions, &QTreeWidget::itemActivated, this, &HistoryWindow::choose);
    connect(document, &Document::historyChanged, this, &HistoryWindow::refresh);
    connect(document, &QWidget::windowTitleChanged, this, &HistoryWindow::followTitle);
    followTitle();
    refresh();
}

void HistoryWindow::setChoosingEnabled(bool enabled) {
    tableVersions->setEnabled(enabled);
}

void HistoryWindow::followTitle() {
    setWindowTitle(tr("History — %1").arg(m_document->windowTitle()));
}

void HistoryWindow::refresh() {
    // The rows are updated where they stand, so that a click that moves to
    // another version never finds its row gone.
    const QList<VersionRow> rows = versionRows(m_document->history());
    while (tableVersions->topLevelItemCount() > rows.size())
        delete tableVersions->takeTopLevelItem(tableVersions->topLevelItemCount() - 1);
    QTreeWidgetItem* current = nullptr;
    for (int i = 0; i < rows.size(); ++i) {
        const VersionRow& row = rows.at(i);
        QTreeWidgetItem* item = i < tableVersions->topLevelItemCount() ? tableVersions->topLevelItem(i)
                                                                       : new QTreeWidgetItem(tableVersions);
        item->setText(ColumnMarker, row.marker);
        item->setText(ColumnLabel, row.label);
        item->setText(ColumnMade, row.time);
        item->setTextAlignment(ColumnMarker, Qt::AlignCenter);
        item->setData(ColumnMarker, Qt::AccessibleTextRole, row.current ? tr("Current version") : QString());
        QFont font = tableVersions->font();
        font.setBold(row.current);
        for (int column = 0; column < tableVersions->columnCount(); ++column)
            item->setFont(column, font);
        if (row.current)
            current = item;
    }
    if (current) {
        tableVersions->setCurrentItem(current);
        tableVersions->scrollToItem(current);
    }
}

void HistoryWindow::choose(QTreeWidgetItem* item) {
    if (item && tableVersions->isEnabled())
        m_document->moveToVersion(tableVersions->indexOfTopLevelItem(item));
}
