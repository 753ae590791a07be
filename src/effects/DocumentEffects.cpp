// The document's effect actions: each runs one sox effect over the whole
// track or over the selection only, and adopts the result as a new version.

#include "app/AppDelegate.h"
#include "document/Document.h"
#include "effects/EffectCatalogue.h"

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

void Document::buildEffectsMenu() {
    popupMenuEffects = new QMenu(tr("Effects"), this);
    QMenu* reverse = popupMenuEffects->addMenu(tr("Reverse"));
    reverse->addAction(tr("Entire Track"), this, &Document::OnPopupReverseEntireTrack);
    reverse->addAction(tr("Selection"), this, &Document::OnPopupReverseSelection);
    popupMenuTools->addSeparator();
    popupMenuTools->addMenu(popupMenuEffects);
}
