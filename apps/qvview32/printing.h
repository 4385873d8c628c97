#pragma once

#include <windows.h>

#include "model/plot_setup.h"

namespace qvview32 {

/// Asks for printer, copies and pages, and prints in true scale. False when the user gave up or it failed; the text
/// tells why it failed, and is empty otherwise.
bool print_plot(HWND owner, qvview::View& view, const std::string& name, const qvview::PlotSetup& setup,
                qvview::Language language, std::string& problem);

}  // namespace qvview32
