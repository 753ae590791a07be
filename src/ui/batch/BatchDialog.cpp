#include "BatchDialog.h"

#include "batch/RecipePlans.h"
#include "document/ImportPlans.h"
#include "effects/EffectCatalogue.h"
#include "widgets/Alerts.h"
#include "widgets/DialogRows.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QSaveFile>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace {
QString documentsFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QPushButton* button(QWidget* owner, const QString& text, const char* name) {
    auto* b = new QPushButton(text, owner);
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    return b;
}

QListWidget* list(QWidget* owner, const char* name) {
    auto* l = new QListWidget(owner);
    l->setObjectName(QLatin1String(name));
    l->setSelectionMode(QAbstractItemView::ExtendedSelection);
    return l;
}

bool writeFile(QWidget* parent, const QString& path, const QString& workFolder, const QByteArray& content) {
    if (const QString problem = recipeFileProblem(path, workFolder); !problem.isEmpty()) {
        showErrorAlert(parent, problem);
        return false;
    }
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit())
        return true;
    showErrorAlert(parent, QStringLiteral("\"%1\" could not be written: %2").arg(path, file.errorString()));
    return false;
}

// What a step's row tells besides its label: the values it was done with,
// in its dialog's words.
QString stepDetails(const RecipeStep& step) {
    if (step.kind != RecipeStep::Kind::Effect)
        return QStringLiteral("%1 ms").arg(step.milliseconds);
    const EffectEntry* entry = findEffect(step.effect);
    return entry ? effectValuesText(*entry, step.values) : QString();
}
} // namespace

BatchDialog::BatchDialog(PlanRunner& runner, const QString& workFolder, const Recipe& recipe, QWidget* parent)
    : QDialog(parent), m_runner(runner), m_workFolder(workFolder) {
    setObjectName(QStringLiteral("BatchDialog"));
    setWindowTitle(tr("Process Files With This Recipe"));
    auto* layout = new QVBoxLayout(this);
    auto* columns = new QHBoxLayout;
    layout->addLayout(columns);

    auto* steps = new QGroupBox(tr("Steps, in order"), this);
    auto* stepsLayout = new QVBoxLayout(steps);
    listSteps = list(steps, "listSteps");
    btnRemoveStep = button(steps, tr("Remove Step"), "btnRemoveStep");
    auto* skippedCaption = new QLabel(tr("Left out (they cannot be done to another file):"), steps);
    listSkipped = list(steps, "listSkipped");
    listSkipped->setSelectionMode(QAbstractItemView::NoSelection);
    listSkipped->setWordWrap(true);
    listSkipped->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    listSkipped->setMaximumHeight(90);
    stepsLayout->addWidget(listSteps);
    stepsLayout->addWidget(btnRemoveStep, 0, Qt::AlignLeft);
    stepsLayout->addWidget(skippedCaption);
    stepsLayout->addWidget(listSkipped);
    columns->addWidget(steps);

    auto* files = new QGroupBox(tr("Files to process"), this);
    auto* filesLayout = new QVBoxLayout(files);
    listFiles = list(files, "listFiles");
    btnAddFiles = button(files, tr("&Add Files…"), "btnAddFiles");
    btnRemoveFiles = button(files, tr("Remove"), "btnRemoveFiles");
    auto* fileButtons = new QHBoxLayout;
    fileButtons->addWidget(btnAddFiles);
    fileButtons->addWidget(btnRemoveFiles);
    fileButtons->addStretch();
    filesLayout->addWidget(listFiles);
    filesLayout->addLayout(fileButtons);
    columns->addWidget(files);

    auto* form = new QFormLayout;
    layout->addLayout(form);
    textOutputFolder = new QLineEdit(documentsFolder(), this);
    textOutputFolder->setObjectName(QStringLiteral("textOutputFolder"));
    btnChooseFolder = button(this, tr("Choose…"), "btnChooseFolder");
    auto* folderRow = new QHBoxLayout;
    folderRow->addWidget(textOutputFolder);
    folderRow->addWidget(btnChooseFolder);
    form->addRow(tr("Save results in:"), folderRow);
    exportLists = addExportLists(this, form);
    layout->addWidget(hintLabel(this, tr("Each result is named after its file, with \" (2)\" and so on when "
                                         "the name is taken: nothing is overwritten.")));

    // The recipe's own commands on the left, the dialog's on the right.
    auto* buttons = new QHBoxLayout;
    btnLoadRecipe = button(this, tr("Load Recipe…"), "btnLoadRecipe");
    btnSaveRecipe = button(this, tr("Save Recipe…"), "btnSaveRecipe");
    btnSaveScript = button(this, tr("Save As Script…"), "btnSaveScript");
    btnClose = button(this, tr("Close"), "btnClose");
    btnProcess = button(this, tr("Process"), "btnProcess");
    btnProcess->setDefault(true);
    for (QPushButton* b : {btnLoadRecipe, btnSaveRecipe, btnSaveScript})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(btnClose);
    buttons->addWidget(btnProcess);
    layout->addLayout(buttons);

    connect(btnRemoveStep, &QPushButton::clicked, this, &BatchDialog::removeSteps);
    connect(btnAddFiles, &QPushButton::clicked, this, &BatchDialog::addFiles);
    connect(btnRemoveFiles, &QPushButton::clicked, this, &BatchDialog::removeFiles);
    connect(btnChooseFolder, &QPushButton::clicked, this, &BatchDialog::chooseFolder);
    connect(btnLoadRecipe, &QPushButton::clicked, this, &BatchDialog::loadRecipe);
    connect(btnSaveRecipe, &QPushButton::clicked, this, &BatchDialog::saveRecipe);
    connect(btnSaveScript, &QPushButton::clicked, this,
            [this] { saveRecipeScript(this, this->recipe(), m_workFolder); });
    connect(btnClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(btnProcess, &QPushButton::clicked, this, &BatchDialog::process);
    setRecipe(recipe);
    resize(720, 480);
}

Recipe BatchDialog::recipe() const {
    Recipe recipe = m_recipe;
    recipe.exportChoice = exportLists.choice();
    return recipe;
}

void BatchDialog::setRecipe(const Recipe& recipe) {
    m_recipe = recipe;
    exportLists.setChoice(recipe.exportChoice);
    listSteps->clear();
    for (const RecipeStep& step : recipe.steps) {
        auto* item = new QListWidgetItem(step.label, listSteps);
        item->setToolTip(stepDetails(step));
    }
    listSkipped->clear();
    for (const SkippedStep& skipped : recipe.skipped)
        listSkipped->addItem(QStringLiteral("%1: %2").arg(skipped.label, skipped.reason));
    listSkipped->setVisible(!recipe.skipped.isEmpty());
}

void BatchDialog::removeSteps() {
    for (int row = listSteps->count() - 1; row >= 0; --row)
        if (listSteps->item(row)->isSelected())
            m_recipe.steps.removeAt(row);
    setRecipe(recipe());
}

QStringList BatchDialog::inputs() const {
    QStringList files;
    for (int row = 0; row < listFiles->count(); ++row)
        files << listFiles->item(row)->data(Qt::UserRole).toString();
    return files;
}

void BatchDialog::setInputs(const QStringList& files) {
    listFiles->clear();
    for (const QString& file : files) {
        auto* item = new QListWidgetItem(QFileInfo(file).fileName(), listFiles);
        item->setData(Qt::UserRole, file);
        item->setToolTip(file);
    }
}

void BatchDialog::addFiles() {
    QStringList filters;
    for (const QString& extension : openableExtensions())
        filters << QStringLiteral("*.") + extension;
    const QStringList chosen = QFileDialog::getOpenFileNames(this, tr("Add Files"), documentsFolder(),
                                                             tr("Audio files (%1)").arg(filters.join(u' ')));
    QStringList files = inputs();
    for (const QString& file : chosen)
        if (!files.contains(file))
            files << file;
    setInputs(files);
}

void BatchDialog::removeFiles() {
    for (int row = listFiles->count() - 1; row >= 0; --row)
        if (listFiles->item(row)->isSelected())
            delete listFiles->takeItem(row);
}

void BatchDialog::setOutputFolder(const QString& folder) {
    textOutputFolder->setText(folder);
}

void BatchDialog::chooseFolder() {
    const QString folder =
        QFileDialog::getExistingDirectory(this, tr("Save Results In"), textOutputFolder->text());
    if (!folder.isEmpty())
        setOutputFolder(folder);
}

void BatchDialog::loadRecipe() {
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Load Recipe"), documentsFolder(), tr("Recipes (*.json)"));
    if (path.isEmpty())
        return;
    QFile file(path);
    QString problem = file.open(QIODevice::ReadOnly) ? QString() : file.errorString();
    const std::optional<Recipe> loaded =
        problem.isEmpty() ? recipeFromJson(file.readAll(), &problem) : std::nullopt;
    if (!loaded) {
        showErrorAlert(this,
                       QStringLiteral("\"%1\" holds no recipe: %2").arg(QFileInfo(path).fileName(), problem));
        return;
    }
    setRecipe(*loaded);
}

void BatchDialog::saveRecipe() {
    QString path = QFileDialog::getSaveFileName(
        this, tr("Save Recipe"), documentsFolder() + QStringLiteral("/recipe.json"), tr("Recipes (*.json)"));
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".json");
    writeFile(this, path, m_workFolder, recipeJson(recipe()));
}

void BatchDialog::process() {
    if (m_run && !m_run->isFinished())
        return;
    const QStringList files = inputs();
    const QString folder = textOutputFolder->text().trimmed();
    const Recipe chosen = recipe();
    QString problem =
        buildRecipePlan(chosen, QStringLiteral("in.wav"), m_workFolder, QStringLiteral("out")).problem;
    if (files.isEmpty())
        problem = QStringLiteral("Add the files to process first.");
    else if (!QFileInfo(folder).isDir())
        problem =
            QStringLiteral("The folder \"%1\" does not exist: choose where the results go.").arg(folder);
    else if (!QFileInfo(folder).isWritable())
        problem = QStringLiteral("The folder \"%1\" cannot be written to: choose another.").arg(folder);
    if (!problem.isEmpty()) {
        showErrorAlert(this, problem);
        return;
    }
    const QStringList outputs =
        outputPaths(files, QFileInfo(folder).absoluteFilePath(), exportExtension(chosen),
                    [](const QString& path) { return QFileInfo::exists(path); });
    m_run = new BatchRun(m_runner, chosen, files, outputs, m_workFolder, this);
    connect(m_run, &BatchRun::finished, this, &BatchDialog::batchFinished);
    auto* progress = new BatchProgressDialog(*m_run, this);
    progress->setAttribute(Qt::WA_DeleteOnClose);
    progress->open();
    m_run->start();
}

BatchProgressDialog::BatchProgressDialog(BatchRun& run, QWidget* parent) : QDialog(parent), m_run(run) {
    setObjectName(QStringLiteral("BatchProgressDialog"));
    setWindowTitle(tr("Processing Files"));
    setMinimumWidth(460);
    auto* layout = new QVBoxLayout(this);
    labelFile = new QLabel(this);
    labelFile->setObjectName(QStringLiteral("labelFile"));
    labelStage = new QLabel(this);
    labelStage->setObjectName(QStringLiteral("labelStage"));
    auto* bar = new QProgressBar(this);
    bar->setObjectName(QStringLiteral("progressFiles"));
    labelSummary = new QLabel(this);
    labelSummary->setObjectName(QStringLiteral("labelSummary"));
    labelSummary->setWordWrap(true);
    listFailures = new QListWidget(this);
    listFailures->setObjectName(QStringLiteral("listFailures"));
    listFailures->setWordWrap(true);
    listFailures->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (QWidget* w :
         {static_cast<QWidget*>(labelFile), static_cast<QWidget*>(labelStage), static_cast<QWidget*>(bar),
          static_cast<QWidget*>(labelSummary), static_cast<QWidget*>(listFailures)})
        layout->addWidget(w);
    labelSummary->hide();
    listFailures->hide();
    auto* buttons = new QDialogButtonBox(this);
    btnCancel = buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    btnCancel->setObjectName(QStringLiteral("btnCancel"));
    btnClose = buttons->addButton(tr("Close"), QDialogButtonBox::AcceptRole);
    btnClose->setObjectName(QStringLiteral("btnClose"));
    btnClose->hide();
    layout->addWidget(buttons);
    connect(btnCancel, &QPushButton::clicked, this, [this] {
        btnCancel->setEnabled(false);
        labelStage->setText(tr("Cancelling…"));
        m_run.cancel();
    });
    connect(btnClose, &QPushButton::clicked, this, &QDialog::accept);
    // Files run side by side: the line above the bar counts the files ended,
    // and one line under it tells each running file's step.
    bar->setRange(0, int(run.results().size()));
    bar->setValue(0);
    labelFile->setText(tr("%1 files, %2 at once").arg(run.results().size()).arg(run.filesAtOnce()));
    connect(&run, &BatchRun::stageStarted, this,
            [this](int file, int index, int count, const QString& stage) {
                m_stages[file] = tr("%1: Step %2 of %3: %4")
                                     .arg(QFileInfo(m_run.results().at(file).input).fileName())
                                     .arg(index + 1)
                                     .arg(count)
                                     .arg(stage);
                showStages();
            });
    connect(&run, &BatchRun::fileEnded, this, [this, bar](int file) {
        m_stages.remove(file);
        showStages();
        using State = BatchRun::FileResult;
        bar->setValue(m_run.count(State::Done) + m_run.count(State::Failed) + m_run.count(State::Cancelled));
    });
    connect(&run, &BatchRun::finished, this, [this, bar] {
        bar->setValue(bar->maximum());
        showSummary();
    });
}

void BatchProgressDialog::showStages() {
    if (btnCancel->isEnabled())
        labelStage->setText(m_stages.values().join(u'\n'));
}

void BatchProgressDialog::showSummary() {
    using State = BatchRun::FileResult;
    const int all = int(m_run.results().size()), done = m_run.count(State::Done);
    QString summary = tr("%1 of %2 files processed.").arg(done).arg(all);
    if (const int left = m_run.count(State::Cancelled) + m_run.count(State::NotStarted); left > 0)
        summary += tr(" Cancelled: %1 not processed; the unfinished result was removed.").arg(left);
    if (m_run.count(State::Failed) > 0)
        summary += tr(" These failed:");
    if (!m_run.results().isEmpty())
        labelFile->setText(tr("Results in %1").arg(QFileInfo(m_run.results().first().output).path()));
    labelSummary->setText(summary);
    labelSummary->show();
    for (const BatchRun::FileResult& file : m_run.results())
        if (file.state == State::Failed)
            listFailures->addItem(failureLine(file));
    listFailures->setVisible(listFailures->count() > 0);
    labelStage->clear();
    btnCancel->hide();
    btnClose->show();
    btnClose->setDefault(true);
}

void BatchProgressDialog::reject() {
    if (!m_run.isFinished()) {
        btnCancel->click();
        return;
    }
    QDialog::reject();
}

bool saveRecipeScript(QWidget* parent, const Recipe& recipe, const QString& workFolder) {
    const QString problem =
        buildRecipePlan(recipe, QStringLiteral("in.wav"), QStringLiteral("work"), QStringLiteral("out"))
            .problem;
    if (!problem.isEmpty()) {
        showErrorAlert(parent, problem);
        return false;
    }
    QString path = QFileDialog::getSaveFileName(parent, QObject::tr("Save Recipe As Script"),
                                                documentsFolder() + QStringLiteral("/recipe.sh"),
                                                QObject::tr("Shell scripts (*.sh)"));
    if (path.isEmpty())
        return false;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".sh");
    if (!writeFile(parent, path, workFolder, recipeScript(recipe).toUtf8()))
        return false;
    QFile::setPermissions(path,
                          QFile::permissions(path) | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther);
    return true;
}
