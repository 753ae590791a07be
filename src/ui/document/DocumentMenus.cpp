// The window's own menus in the menu bar: every command of the toolbar's
// pop-up menus (paste places, mixing, silence, effects, splits, play) is
// also found there, as the very same actions, so a menu-bar item runs the
// same method as its pop-up counterpart.

#include "Document.h"

#include "HistoryWindow.h"
#include "plans/PlanRunner.h"
#include "timeline/MarkerKeys.h"
#include "timeline/SetSelectionDialog.h"
#include "timeline/View_Audio_Wave.h"
#include "widgets/MenuMnemonics.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <algorithm>

void Document::buildMenuBar() {
    QMenuBar* bar = menuBar();
    auto* edit = bar->findChild<QMenu*>(QStringLiteral("menuEdit"));
    auto* tracks = bar->findChild<QMenu*>(QStringLiteral("menuTracks"));

    // File: after the application's Export, this window's recipe commands.
    auto* file = bar->findChild<QMenu*>(QStringLiteral("menuFile"));
    const QList<QAction*> fileItems = file->actions();
    const auto endOfExport = std::find_if(fileItems.begin(), fileItems.end(),
                                          [](const QAction* item) { return item->isSeparator(); });
    QAction* beforeQuit = endOfExport == fileItems.end() ? nullptr : *endOfExport;
    file->insertSeparator(beforeQuit);
    file->insertActions(beforeQuit, {m_batch->actionProcessFiles, m_batch->actionSaveRecipeScript});

    // Edit: this window's History… after the application's Undo and Redo;
    // then select all, the paste places, mixing and silence.
    actionHistory = new QAction(tr("&History…"), this);
    actionHistory->setObjectName(QStringLiteral("actionHistory"));
    actionHistory->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_H));
    actionHistory->setShortcutContext(Qt::WindowShortcut);
    connect(actionHistory, &QAction::triggered, this, &Document::showHistory);
    const QList<QAction*> applicationItems = edit->actions();
    const auto endOfUndoRedo = std::find_if(applicationItems.begin(), applicationItems.end(),
                                            [](const QAction* item) { return item->isSeparator(); });
    edit->insertAction(endOfUndoRedo == applicationItems.end() ? nullptr : *endOfUndoRedo, actionHistory);
    actionSelectAll = edit->addAction(tr("Select &All"), this, &Document::selectAll);
    actionSelectAll->setShortcuts(QKeySequence::SelectAll);
    actionSelectAll->setShortcutContext(Qt::WindowShortcut);
    actionSetSelection = edit->addAction(tr("Set Selectio&n…"), this, &Document::setSelectionByTyping);
    actionSetSelection->setObjectName(QStringLiteral("actionSetSelection"));
    actionSetSelection->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_G));
    actionSetSelection->setShortcutContext(Qt::WindowShortcut);
    edit->addSeparator();
    const auto copyOf = [edit](QMenu* popup, const QString& title) {
        QMenu* menu = edit->addMenu(title);
        menu->addActions(popup->actions());
        return menu;
    };
    menuPasteAt = copyOf(m_editing->popupMenuPaste, tr("Paste At"));
    menuPasteMixing = copyOf(m_editing->popupMenuPasteMixing, tr("&Mix Copied Audio In"));
    menuSilence = copyOf(m_editing->popupMenuSilence, tr("&Silence"));
    edit->addSeparator();
    addMarkerKey(edit, tr("Extend Selection to Start"), QKeySequence::SelectStartOfLine,
                 MarkerKey::ExtendSelectionStart);
    addMarkerKey(edit, tr("Extend Selection to End"), QKeySequence::SelectEndOfLine,
                 MarkerKey::ExtendSelectionEnd);
    addMarkerKey(edit, tr("Start Selection at Play Position"), QKeySequence(Qt::Key_BracketLeft),
                 MarkerKey::SelectionStartHere);
    addMarkerKey(edit, tr("End Selection at Play Position"), QKeySequence(Qt::Key_BracketRight),
                 MarkerKey::SelectionEndHere);

    // Play: the play menu's three starts, then pause, stop and record, which
    // follow the toolbar buttons' states.
    menuPlay = new QMenu(tr("&Play"), this);
    menuPlay->addActions(m_transport->popupMenuPlay->actions());
    menuPlay->addSeparator();
    const auto follow = [this](QAction* button, void (TransportActions::*run)()) {
        QAction* item = menuPlay->addAction(button->text(), m_transport, run);
        connect(button, &QAction::enabledChanged, this, &Document::updateMenus);
        m_followedButtons.append(qMakePair(item, button));
        return item;
    };
    follow(btnPause, &TransportActions::OnToolbarPause);
    follow(btnStop, &TransportActions::OnToolbarStop);
    follow(btnRecord, &TransportActions::OnToolbarRecord);
    menuPlay->addSeparator();
    addMarkerKey(menuPlay, tr("Go to Start"), QKeySequence::MoveToStartOfLine, MarkerKey::ToStart);
    addMarkerKey(menuPlay, tr("Go to End"), QKeySequence::MoveToEndOfLine, MarkerKey::ToEnd);
    addMarkerKey(menuPlay, tr("Back One Second"), QKeySequence::MoveToPreviousChar, MarkerKey::BackSecond);
    addMarkerKey(menuPlay, tr("Forward One Second"), QKeySequence::MoveToNextChar, MarkerKey::ForwardSecond);
    addMarkerKey(menuPlay, tr("Back a Tenth of the Track"), QKeySequence::SelectPreviousChar,
                 MarkerKey::BackTenth);
    addMarkerKey(menuPlay, tr("Forward a Tenth of the Track"), QKeySequence::SelectNextChar,
                 MarkerKey::ForwardTenth);
    bar->insertMenu(tracks->menuAction(), menuPlay);

    // Effects: the tools menu's effects menu itself, filled when first shown.
    bar->insertMenu(tracks->menuAction(), m_effects->popupMenuEffects);
    m_effects->popupMenuEffects->setTitle(tr("Effe&cts"));

    // View: the toolbar's zoom actions with their keys.
    menuView = new QMenu(tr("&View"), this);
    menuView->addActions({btnZoomPlus, btnZoomMinus});
    actionZoomToFit = menuView->addAction(tr("Zoom to &Fit"), m_zoom, &ZoomActions::zoomToFit);
    actionZoomToFit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_0));
    actionZoomToSelection =
        menuView->addAction(tr("Zoom to &Selection"), m_zoom, &ZoomActions::zoomToSelection);
    actionZoomToSelection->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_E));
    for (QAction* action : {actionZoomToFit, actionZoomToSelection})
        action->setShortcutContext(Qt::WindowShortcut);
    bar->insertMenu(tracks->menuAction(), menuView);

    // Tracks: the splits and the loudness beside the mixer.
    tracks->addSeparator();
    tracks->addMenu(m_split->popupMenuSplit);
    tracks->addAction(m_loudness->actionMeasureLoudness);
    updateMenus();

    // A letter for every item, the menu bar's first and then the toolbar's
    // pop-ups, whose items are mostly the same actions.
    giveMnemonics(bar);
    for (QMenu* menu : findChildren<QMenu*>())
        giveMnemonics(menu);
}

void Document::addMarkerKey(QMenu* menu, const QString& text, const QKeySequence& keys, MarkerKey key) {
    QAction* action = menu->addAction(text, this, [this, key] { pressMarkerKey(key); });
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WindowShortcut);
    m_markerKeys.append(action);
}

void Document::pressMarkerKey(MarkerKey key) {
    // As a click on the waveform does: a new play position is where the
    // playing sound goes on the next tick.
    if (!b_Audio_Loaded || recording() || m_session.runner().isBusy())
        return;
    const Markers moved =
        moveMarkers({m_track.f_Audio_Position, m_track.f_Selection_Start, m_track.f_Selection_End}, key,
                    m_track.f_Audio_Length);
    m_track.setPosition(moved.position);
    m_track.setSelection(moved.selectionStart, moved.selectionEnd);
}

void Document::updateMenus() {
    // Nothing that edits, plays or splits is offered while a plan runs or
    // before a track is loaded; nothing that edits while the window records.
    const bool idle = !m_session.runner().isBusy();
    const bool editable = idle && b_Audio_Loaded && !recording();
    for (QMenu* menu :
         {menuPasteAt, menuPasteMixing, menuSilence, m_effects->popupMenuEffects, m_split->popupMenuSplit})
        menu->menuAction()->setEnabled(editable);
    m_loudness->actionMeasureLoudness->setEnabled(editable);
    actionSelectAll->setEnabled(b_Audio_Loaded);
    actionSetSelection->setEnabled(b_Audio_Loaded && !recording());
    for (QAction* action : {actionZoomToFit, actionZoomToSelection})
        action->setEnabled(b_Audio_Loaded && !recording());
    for (QAction* action : std::as_const(m_markerKeys))
        action->setEnabled(idle && b_Audio_Loaded && !recording());
    for (QAction* action : m_transport->popupMenuPlay->actions())
        action->setEnabled(idle && b_Audio_Loaded && btnPlay->isEnabled());
    for (const auto& [item, button] : std::as_const(m_followedButtons))
        item->setEnabled(idle && button->isEnabled());
}

void Document::selectAll() {
    if (!b_Audio_Loaded)
        return;
    m_track.setSelection(0, 100);
}

void Document::setSelectionByTyping() {
    if (!b_Audio_Loaded || recording())
        return;
    const SegmentVariables now = m_track.Calculate_Segment_Variables();
    SetSelectionDialog dialog(now.f_StartSelection, now.f_EndSelection, m_track.f_Audio_Length, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_track.setSelection(dialog.startPercent(), dialog.endPercent());
    m_track.setPosition(m_track.Calculate_Segment_Variables().f_StartSelection);
    m_zoom->reveal(dialog.startPercent(), dialog.endPercent());
}

void Document::showHistory() {
    // One window per document, made when first asked for and kept (hidden
    // when closed) until the document goes.
    if (!m_historyWindow) {
        m_historyWindow = new HistoryWindow(this);
        m_historyWindow->setChoosingEnabled(!m_session.runner().isBusy());
    }
    m_historyWindow->show();
    m_historyWindow->raise();
    m_historyWindow->activateWindow();
}
