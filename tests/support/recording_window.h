#pragma once

/// A view's window without a screen: it records what it is asked, and its client context is a bitmap.

#include <vector>

#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/platform/host.h"

namespace qvtest {

class RecordingWindow : public qv::Window {
 public:
  RecordingWindow(int width, int height) : bitmap(width, height, 0xFFFFFF), rect(0, 0, width, height) {}

  CRect ClientRect() const override { return rect; }
  CDC& ClientContext() override {
    ++contexts;
    return bitmap;
  }
  void ReleaseClientContext() override { --contexts; }
  void Invalidate(bool erase) override { repaints += erase; }
  void Post(unsigned int message) override { posted.push_back(message); }

  /// How many pixels are not blank.
  int drawn() const {
    int n = 0;
    for (int y = 0; y < bitmap.Height(); ++y)
      for (int x = 0; x < bitmap.Width(); ++x) n += bitmap.GetPixel(x, y) != 0xFFFFFF;
    return n;
  }

  qv::BitmapContext bitmap;
  CRect rect;
  int contexts = 0;  // taken and not given back
  int repaints = 0;  // with the background erased
  std::vector<unsigned int> posted;
};

}  // namespace qvtest
