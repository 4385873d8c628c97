#pragma once

/// A drawing in a window of its own, in one call. Programs link `qvtools::qt_widgets` or, on Windows, `qvtools::win32`
/// for it.

/// Shows a drawing file of any form until its window is closed. Returns 1, or 0 when the file is no drawing or there is
/// no screen, which is reported with code 301.
int Show_DXF(const char* file);

/// Shows it and returns at once; the window lives until it is closed. Returns 1 or 0 in the same way. The program has
/// to handle the messages of its windows.
int Show_DXF_Modaless(const char* file);
