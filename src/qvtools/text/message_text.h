#pragma once

/// The text of the calculation-message window, as hosts keep it: GBK bytes, lines ended by "\r\n", positions in bytes.

#include <string>

#include "qvtools/api.h"

namespace qv {

/// The text and its selection, which is empty and at the end at first.
class QV_API MessageText {
 public:
  /// One more than the number of line ends.
  int LineCount() const;
  /// The position where the line (0 the first) begins; -1 when there is no such line.
  int LineStart(int line) const;
  /// Selects from one position up to another, in any order; positions beyond the end mean the end.
  void Select(int from, int to);
  /// Whether the next `Replace` appends to the text.
  bool AppendsNext() const { return from_ == bytes_.size(); }
  /// Replaces the selection by the text; the selection is then empty and stands after it.
  void Replace(const char* text);
  /// The text.
  const std::string& Bytes() const { return bytes_; }

 private:
  std::string bytes_;
  std::size_t from_ = 0;
  std::size_t to_ = 0;
};

}  // namespace qv
