#pragma once

#include <gtest/gtest.h>

#include "qvtools/fonts/shx.h"
#include "support/font_files.h"
#include "support/temporary_directory.h"

namespace qvtest {

/// While it lives, the text font gives every byte the same width: 0.75 of its height.
class EvenTextFont {
 public:
  EvenTextFont() {
    Shapes shapes;
    for (int c = 32; c < 256; ++c) shapes.push_back({c, codes({2, 8, 6, 0})});
    const TemporaryDirectory directory;
    directory.write("test.shx", text_font(shapes, 6));
    G_ShapeFont = CShx();
    EXPECT_EQ(G_ShapeFont.SetTxtFont(directory.prefix().c_str(), "test.shx"), 1);
  }
  ~EvenTextFont() { G_ShapeFont = before_; }
  EvenTextFont(const EvenTextFont&) = delete;
  EvenTextFont& operator=(const EvenTextFont&) = delete;

 private:
  CShx before_ = G_ShapeFont;
};

}  // namespace qvtest
