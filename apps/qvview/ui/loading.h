#pragma once

#include <QtWidgets/QWidget>
#include <functional>
#include <memory>

#include "common/fonts.h"
#include "model/drawing.h"
#include "qvtools.h"
#include "ui/compare_panel.h"
#include "ui/words.h"

namespace qvview {

/// A path as the library takes it.
std::string native(const QString& path);

/// The fonts of a drawing that was read, and those that it names and that will not draw it.
struct ChosenFonts {
  qvapps::FontFiles files;
  std::vector<std::string> replaced;
};

/// A drawing read from a file, or the reason why it could not be read.
struct Loaded {
  std::unique_ptr<Drawing> drawing;
  Text reason = Text::GivenUp;
  qv::ImportReport report;
  ChosenFonts fonts;
};

/// Reads a drawing and makes it ready to be shown, in a thread of its own, while the windows stay alive. When it takes
/// long a dialog over the parent shows its progress; the dialog's button gives it up. `usual` are the fonts of drawings
/// whose own there are not.
Loaded load_drawing(QWidget* parent, const Words& words, const QString& path, bool lightBackground,
                    const qvapps::FontFiles& usual);

/// A drawing of what differs between two, or the reason why one of them could not be read.
struct LoadedComparison {
  std::unique_ptr<Drawing> drawing;
  std::unique_ptr<ComparedDrawings> compared;
  Text reason = Text::GivenUp;
  QString failed;  ///< the path of the one that could not be read
  ChosenFonts fonts;
};

/// Reads and compares two drawings in the same way.
LoadedComparison load_comparison(QWidget* parent, const Words& words, const QString& before, const QString& after,
                                 bool lightBackground, const qvapps::FontFiles& usual);

}  // namespace qvview
