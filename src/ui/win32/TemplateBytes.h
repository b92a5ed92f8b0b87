// A dialog's table as the template that Windows makes a dialog of.
#pragma once

#include <cstdint>
#include <vector>

#include "ui/DialogTemplate.h"

namespace tonvane {

// An extended template (DLGTEMPLATEEX) for the CreateDialogIndirect functions: a dialog with a
// caption, a system menu and a minimize box. It holds as 16-bit words, which Windows expects to
// begin at a multiple of four bytes, as the vector's memory does.
std::vector<uint16_t> TemplateBytes(const DialogTemplate& dialog);

}  // namespace tonvane
