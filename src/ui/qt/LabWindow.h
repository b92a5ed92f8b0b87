// The dialog with all its controls in the open, for an engineer at a desk.
#pragma once

#include <QGridLayout>
#include <QGroupBox>

#include "ui/qt/DialogWindow.h"

namespace tonvane {

class LabWindow : public DialogWindow {
  public:
    LabWindow();

  private:
    // A control of the template, made and added to the host.
    QWidget* make(int id);

    // A button of the window's own that sends a command.
    QWidget* makeCommand(int id);

    // The control behind its name.
    QWidget* makeNamed(int id);

    QLayout* makeLegend();
    QLayout* makeStatus();
    QGroupBox* makeMeasurement();
    QGroupBox* makeTarget();
    QGroupBox* makeCurves();
    QGroupBox* makePlayer();
    void openWave();
    QGroupBox* makeAmplifier();
    QGroupBox* makeDynamics();
};

}  // namespace tonvane
