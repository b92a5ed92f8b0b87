// The dialog as its template has it, in dialog units.
#pragma once

#include "ui/DialogTemplate.h"
#include "ui/qt/DialogWindow.h"

namespace tonvane {

class TemplateWindow : public DialogWindow {
  public:
    explicit TemplateWindow(const DialogTemplate& dialog);
};

}  // namespace tonvane
