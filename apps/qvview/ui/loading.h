#pragma once

#include <QtWidgets/QWidget>
#include <memory>

#include "qvtools.h"
#include "ui/words.h"

namespace qvview {

/// A path as the library takes it.
std::string native(const QString& path);

/// A drawing read from a file, or the reason why it could not be read.
struct Loaded {
  std::unique_ptr<DXF> document;
  Text reason = Text::GivenUp;
  qv::ImportReport report;
};

/// Reads a drawing, with a progress dialog over the parent when it takes long; the dialog's button gives the reading
/// up.
Loaded load_drawing(QWidget* parent, const Words& words, const QString& path);

}  // namespace qvview
