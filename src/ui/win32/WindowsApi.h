// The Windows headers, without the names that they take away from everybody else.
#pragma once

// The first one comes before the others.
// clang-format off
#include <windows.h>
#include <windowsx.h>
#include <commctrl.h>
#include <commdlg.h>
#include <objbase.h>
#include <shellapi.h>
// clang-format on

// A name of the dialog's own; the function is called with its W.
#undef MessageBox
