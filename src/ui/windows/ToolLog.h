#pragma once

class PlanRunner;
class QWidget;

// Shows every tool run of this session, so a user can see and copy the exact
// command lines the editor ran and what the tools answered.
void showToolLog(QWidget* parent, const PlanRunner& runner);
