#include "EffectActions.h"

#include "EffectDialogs.h"
#include "EffectPreview.h"
#include "actions/TrackWindow.h"
#include "widgets/Alerts.h"
#include "widgets/MenuMnemonics.h"

#include <QMenu>

EffectActions::EffectActions(TrackWindow& window, QObject* parent) : QObject(parent), m_window(window) {
    popupMenuEffects = new QMenu(tr("Effects"), window.windowWidget());
    connect(popupMenuEffects, &QMenu::aboutToShow, this, &EffectActions::fillEffectsMenu);
}

void EffectActions::applyEffect(const EffectArguments& arguments, bool selectionOnly, const QString& label,
                                const Replay& replay, const QString& title) {
    const ResultNames names = m_window.resultNames();
    EditPlan plan = selectionOnly ? buildEffectSelectionPlan(m_window.editState(), names, arguments)
                                  : buildEffectPlan(m_window.editState(), names, arguments);
    plan.label = label;
    plan.clippingName = title;
    if (!selectionOnly)
        plan.replay = replay;
    m_window.runEdit(plan);
}

void EffectActions::OnPopupReverseEntireTrack() {
    runEffect(*findEffect(QStringLiteral("Reverse")), false);
}
void EffectActions::OnPopupReverseSelection() {
    runEffect(*findEffect(QStringLiteral("Reverse")), true);
}

void EffectActions::runEffect(const EffectEntry& entry, bool selectionOnly) {
    EffectValues values;
    if (!entry.dialog.isEmpty()) {
        EffectDialog dialog(entry.dialog, m_window.windowWidget());
        if (!entry.windowTitle.isEmpty())
            dialog.setWindowTitle(entry.windowTitle);
        // The dialog's Preview runs the very arguments OK will run.
        new EffectPreview(
            dialog, m_window,
            [&entry, selectionOnly](const EditState& s, const PreviewFiles& files, const EffectValues& v) {
                return buildPreviewPlan(s, files, entry.arguments(v), selectionOnly);
            },
            entry.title);
        dialog.exec();
        if (!dialog.bOK)
            return;
        values = dialog.effectValues();
    }
    const QString label = effectVersionLabel(entry, selectionOnly);
    applyEffect(entry.arguments(values), selectionOnly, label, effectReplay(entry.key, label, values),
                entry.title);
}

void EffectActions::OnPopupEqualizerEntireTrack() {
    runEffect(*findEffect(QStringLiteral("Equalizer")), false);
}

void EffectActions::OnPopupNoiseReduction() {
    EffectDialog ask(askNoiseSelectedDialog(), m_window.windowWidget());
    ask.exec();
    if (!ask.bOK)
        return;
    EffectDialog strength(noiseReductionDialog(), m_window.windowWidget());
    new EffectPreview(
        strength, m_window,
        [](const EditState& s, const PreviewFiles& files, const EffectValues& v) {
            return buildNoiseReductionPreviewPlan(s, files, v.real(QStringLiteral("f_Level")));
        },
        tr("Noise Reduction"));
    strength.exec();
    if (!strength.bOK)
        return;
    const EditState state = m_window.editState();
    if (state.f_Selection_End <= state.f_Selection_Start) {
        showErrorAlert(m_window.windowWidget(),
                       QStringLiteral("Select a stretch that holds noise only, then try again."));
        return;
    }
    m_window.runEdit(buildNoiseReductionPlan(state, m_window.resultNames(),
                                             strength.effectValues().real(QStringLiteral("f_Level"))));
}

void EffectActions::fillEffectsMenu() {
    // Filled when first shown: the catalogue's rows group by group, each a
    // submenu with its entire-track and (where it has one) selection action;
    // noise reduction, a procedure of its own, comes last.
    if (!popupMenuEffects->isEmpty())
        return;
    const QString ellipsis = QStringLiteral("…");
    QString group;
    for (const EffectEntry& entry : effectCatalogue()) {
        if (entry.group != group && !group.isEmpty())
            popupMenuEffects->addSeparator();
        group = entry.group;
        QMenu* menu = popupMenuEffects->addMenu(entry.title);
        const QString asks = entry.dialog.isEmpty() ? QString() : ellipsis;
        QAction* whole =
            menu->addAction(tr("Entire Track") + asks, this, [this, &entry] { runEffect(entry, false); });
        whole->setObjectName(actionName(entry, false));
        if (entry.selection) {
            QAction* part =
                menu->addAction(tr("Selection") + asks, this, [this, &entry] { runEffect(entry, true); });
            part->setObjectName(actionName(entry, true));
        }
    }
    popupMenuEffects->addSeparator();
    popupMenuEffects->addAction(tr("Noise Reduction") + ellipsis, this, &EffectActions::OnPopupNoiseReduction)
        ->setObjectName(QStringLiteral("OnPopupNoiseReduction"));
    giveMnemonics(popupMenuEffects);
}
