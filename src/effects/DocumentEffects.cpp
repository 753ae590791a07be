// The document's effect actions: each runs one sox effect over the whole
// track or over the selection only, and adopts the result as a new version.

#include "app/AppDelegate.h"
#include "document/Document.h"
#include "effects/EffectCatalogue.h"
#include "effects/EffectDialogs.h"

#include <QMenu>

void Document::applyEffect(const EffectArguments& arguments, bool selectionOnly) {
    const ResultNames names(m_app.s_Output_Folder);
    runEdit(selectionOnly ? buildEffectSelectionPlan(editState(true), names, arguments)
                          : buildEffectPlan(editState(false), names, arguments));
}

void Document::OnPopupReverseEntireTrack() {
    applyEffect({{}, {"reverse"}}, false);
}
void Document::OnPopupReverseSelection() {
    applyEffect({{}, {"reverse"}}, true);
}

void Document::runEffect(const EffectEntry& entry, bool selectionOnly) {
    if (entry.dialog.isEmpty()) {
        applyEffect(entry.arguments({}), selectionOnly);
        return;
    }
    const std::unique_ptr<EffectDialog> dialog = makeEffectDialog(entry.dialog, this);
    if (!dialog)
        return;
    if (!entry.windowTitle.isEmpty())
        dialog->setWindowTitle(entry.windowTitle);
    dialog->exec();
    if (dialog->bOK)
        applyEffect(entry.arguments(dialog->effectValues()), selectionOnly);
}

void Document::buildEffectsMenu() {
    popupMenuEffects = new QMenu(tr("Effects"), this);
    connect(popupMenuEffects, &QMenu::aboutToShow, this, &Document::fillEffectsMenu);
    popupMenuTools->addSeparator();
    popupMenuTools->addMenu(popupMenuEffects);
}

void Document::fillEffectsMenu() {
    // Filled when first shown: one submenu per effect of the catalogue whose
    // dialog exists, with its entire-track and (where it has one) selection item.
    if (!popupMenuEffects->isEmpty())
        return;
    for (const EffectEntry& entry : effectCatalogue()) {
        if (!entry.dialog.isEmpty() && !makeEffectDialog(entry.dialog))
            continue;
        QMenu* menu = popupMenuEffects->addMenu(entry.title);
        menu->addAction(tr("Entire Track"), this, [this, &entry] { runEffect(entry, false); });
        if (entry.selection)
            menu->addAction(tr("Selection"), this, [this, &entry] { runEffect(entry, true); });
    }
}
