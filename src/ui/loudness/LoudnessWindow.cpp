#include "LoudnessWindow.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

LoudnessWindow::LoudnessWindow(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("LoudnessWindow"));
    auto* layout = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    layout->addLayout(grid);
    const QStringList rows{tr("Integrated loudness"), tr("Loudness range"), tr("True peak"),
                           tr("Sample peak")};
    for (int column = 0; column < Columns; ++column) {
        m_headers[column] = new QLabel(column == ColumnTrack ? tr("<b>Entire track</b>") : QString(), this);
        grid->addWidget(m_headers[column], 0, column + 1);
    }
    for (int row = 0; row < Rows; ++row) {
        grid->addWidget(new QLabel(rows[row], this), row + 1, 0);
        for (int column = 0; column < Columns; ++column) {
            m_figures[row][column] = new QLabel(this);
            m_figures[row][column]->setTextInteractionFlags(Qt::TextSelectableByMouse);
            grid->addWidget(m_figures[row][column], row + 1, column + 1, Qt::AlignRight);
        }
    }
    grid->setHorizontalSpacing(18);

    auto* targets = new QGroupBox(tr("The entire track against each target"), this);
    auto* form = new QFormLayout(targets);
    for (const LoudnessTarget& target : loudnessTargets()) {
        auto* distance = new QLabel(targets);
        form->addRow(
            QStringLiteral("%1 (%2 LUFS, %3 dBTP):").arg(target.name).arg(target.lufs).arg(target.ceiling),
            distance);
        m_distances.append(distance);
    }
    layout->addWidget(targets);

    labelStatus = new QLabel(this);
    labelStatus->setObjectName(QStringLiteral("labelStatus"));
    labelStatus->setWordWrap(true);
    layout->addWidget(labelStatus);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

void LoudnessWindow::showMeasuring(const QString& source, const QString& selection) {
    setWindowTitle(tr("Loudness of “%1”").arg(source));
    m_headers[ColumnSelection]->setText(selection.isEmpty() ? QString()
                                                            : tr("<b>Selection</b><br>%1").arg(selection));
    for (auto& row : m_figures)
        for (QLabel* label : row)
            label->clear();
    for (QLabel* label : std::as_const(m_distances))
        label->clear();
    labelStatus->setText(tr("Measuring…"));
}

void LoudnessWindow::showReading(int column, const LoudnessReading& reading) {
    m_figures[RowIntegrated][column]->setText(loudnessFigureText(reading.integrated, QStringLiteral("LUFS")));
    m_figures[RowRange][column]->setText(loudnessFigureText(reading.range, QStringLiteral("LU")));
    m_figures[RowTruePeak][column]->setText(loudnessFigureText(reading.truePeak, QStringLiteral("dBTP")));
    m_figures[RowSamplePeak][column]->setText(loudnessFigureText(reading.samplePeak, QStringLiteral("dBFS")));
}

void LoudnessWindow::showTrack(const LoudnessReading& reading) {
    showReading(ColumnTrack, reading);
    for (qsizetype i = 0; i < m_distances.size(); ++i)
        m_distances[i]->setText(targetDistanceText(reading, loudnessTargets().at(i)));
    labelStatus->clear();
}

void LoudnessWindow::showSelection(const LoudnessReading& reading) {
    showReading(ColumnSelection, reading);
}

void LoudnessWindow::showFailure(const QString& why) {
    labelStatus->setText(why);
}
