// The document's effect actions: each runs one sox effect over the whole
// track or over the selection only, and adopts the result as a new version.

#include "EffectDialogs.h"
#include "document/Document.h"
#include "effects/EffectCatalogue.h"
#include "widgets/Alerts.h"

#include <QMenu>

void Document::applyEffect(const EffectArguments& arguments, bool selectionOnly, const QString& label,
                           const Replay& replay) {
    const ResultNames names = resultNames();
    EditPlan plan = selectionOnly ? buildEffectSelectionPlan(editState(), names, arguments)
                                  : buildEffectPlan(editState(), names, arguments);
    plan.label = label;
    if (!selectionOnly)
        plan.replay = replay;
    runEdit(plan);
}

void Document::OnPopupReverseEntireTrack() {
    runEffect(*findEffect(QStringLiteral("Reverse")), false);
}
void Document::OnPopupReverseSelection() {
    runEffect(*findEffect(QStringLiteral("Reverse")), true);
}

void Document::runEffect(const EffectEntry& entry, bool selectionOnly) {
    EffectValues values;
    if (!entry.dialog.isEmpty()) {
        EffectDialog dialog(entry.dialog, this);
        if (!entry.windowTitle.isEmpty())
            dialog.setWindowTitle(entry.windowTitle);
        dialog.exec();
        if (!dialog.bOK)
            return;
        values = dialog.effectValues();
    }
    const QString label = effectVersionLabel(entry, selectionOnly);
    applyEffect(entry.arguments(values), selectionOnly, label, effectReplay(entry.key, label, values));
}

void Document::OnPopupEqualizerEntireTrack() {
    runEffect(*findEffect(QStringLiteral("Equalizer")), false);
}

void Document::OnPopupNoiseReduction() {
    EffectDialog ask(askNoiseSelectedDialog(), this);
    ask.exec();
    if (!ask.bOK)
        return;
    EffectDialog strength(noiseReductionDialog(), this);
    strength.exec();
    if (!strength.bOK)
        return;
    const EditState state = editState();
    if (state.f_Selection_End <= state.f_Selection_Start) {
        showErrorAlert(this, QStringLiteral("Select a stretch that holds noise only, then try again."));
        return;
    }
    runEdit(buildNoiseReductionPlan(state, resultNames(),
                                    strength.effectValues().real(QStringLiteral("f_Level"))));
}

void Document::buildEffectsMenu() {
    popupMenuEffects = new QMenu(tr("Effects"), this);
    connect(popupMenuEffects, &QMenu::aboutToShow, this, &Document::fillEffectsMenu);
    popupMenuTools->addSeparator();
    popupMenuTools->addMenu(popupMenuEffects);
}

void Document::fillEffectsMenu() {
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
    popupMenuEffects->addAction(tr("Noise Reduction") + ellipsis, this, &Document::OnPopupNoiseReduction)
        ->setObjectName(QStringLiteral("OnPopupNoiseReduction"));
}
