#pragma once

/// A PDF file (ISO 32000-1, version 1.5): numbered objects, compressed streams, and the table of where each object
/// lies. The same calls give the same bytes.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "qvtools/plot/internal/deflater.h"
#include "qvtools/system/saved_file.h"

namespace qv::detail {

/// Appends the digits of a letter in UTF-16, most significant byte first.
void append_utf16_digits(char32_t letter, std::string& out);

class PdfFile final : private BlockSink {
 public:
  explicit PdfFile(const std::string& path);
  bool is_open() const { return file_.is_open(); }

  /// The number of an object that is written later.
  int reserve();
  /// An object's bytes come between `begin` and `end`. Objects are written one after the other.
  void begin(int object);
  void end();
  void put(std::string_view text) { take(text); }
  void put_integer(std::int64_t value);
  void put_reference(int object);
  /// A text for people: as it is when it is ASCII, otherwise in UTF-16.
  void put_text(std::string_view utf8);

  /// A stream at once. The entries are those of its dictionary besides filter and length.
  void stream(int object, std::string_view entries, std::string_view text);
  void packed_stream(int object, std::string_view entries, std::string_view deflated);
  /// A long stream, whose length is known at its end: what the sink takes until `end_stream` is its text. Other objects
  /// cannot be written meanwhile.
  BlockSink& begin_stream(int object);
  void end_stream();

  /// Writes the table and the trailer, and replaces the target; false when anything could not be written.
  bool finish(int catalog, int info);

 private:
  void take(std::string_view block) override;

  SavedFile file_;
  std::vector<std::int64_t> places_;  // of each object, from the file's beginning
  std::int64_t size_ = 0;
  std::uint64_t digest_[2];
  bool good_ = true;
  std::unique_ptr<Deflater> deflater_;  // of the long stream
  int length_ = 0;                      // the object that holds its length
  std::int64_t stream_from_ = 0;
};

}  // namespace qv::detail
