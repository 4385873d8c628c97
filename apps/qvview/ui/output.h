#pragma once

#include <QtWidgets/QWidget>

#include "model/view.h"
#include "ui/words.h"

namespace qvview {

/// Asks where to, and writes what the view shows as a picture. Returns what to tell: the file that was written; empty
/// when the user gave up. Failures are told in a box.
QString export_view(QWidget* parent, const Words& words, View& view, CSize size, const QString& suggested);

/// Asks for a printer and prints what the view shows, as large as the page allows.
void print_view(QWidget* parent, const Words& words, View& view, CSize size);

}  // namespace qvview
