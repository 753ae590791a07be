#pragma once

#include <QDialog>

class Document;
class QTreeWidget;
class QTreeWidgetItem;

// Edit ▸ History…: the versions of one document's track, oldest first, each
// with its label and the time it was made, the current one marked. Choosing
// a row makes that version current, as undoing or redoing there would. It
// stays open beside its window (one per document) and follows every change.
class HistoryWindow : public QDialog {
    Q_OBJECT
public:
    explicit HistoryWindow(Document* document);

    // Columns: the current row's marker, the label, the time made.
    QTreeWidget* tableVersions;
    enum Column { ColumnMarker, ColumnLabel, ColumnMade };

    // Rows may be chosen while no tool runs, as the toolbar may be pressed.
    void setChoosingEnabled(bool enabled);

private:
    void refresh();
    void followTitle();
    void choose(QTreeWidgetItem* item);

    Document* m_document;
};
