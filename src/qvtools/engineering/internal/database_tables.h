#pragma once

/// What a database keeps while it is open: its segments, the items of the present one, and the bytes of the file.

#include <optional>

#include "qvtools/engineering/database_file.h"
#include "qvtools/engineering/internal/file_blocks.h"
#include "qvtools/engineering/internal/key_table.h"
#include "qvtools/system/saved_file.h"

struct CDataBaseFile::Tables {
  /// Where a segment begins and ends in the file.
  struct Range {
    std::int64_t start;
    std::int64_t end;
  };
  /// Where a value stands among the texts of `items`.
  struct Text {
    std::size_t offset;
    std::size_t length;
  };

  qv::detail::KeyTable<Range> segments;
  qv::detail::KeyTable<Text> items;
  std::optional<qv::SavedFile> saved;  // the file that is written
  qv::detail::BlockWriter writer;
  qv::detail::FileWindow window;

  void put_line(std::string_view text);
  /// Writes the line of an item. Its value is what `put_value` puts at an address, at most `kValueSize` bytes, and
  /// returns the length of.
  template <class PutValue>
  void put_item(std::string_view key, const PutValue& put_value);
  void put_index_entry(std::size_t i);
  bool put_index();

  bool read_trailer(Range& index);
  bool read_index();
  /// Keeps an entry whose line stands among the texts of the segments.
  void read_index_entry(std::string_view line);
  /// Reads the lines of a segment as items, in place of the present ones.
  void read_items(std::string_view text);
  /// Keeps an item whose key and value stand among the texts of the items. The value is changed there: it ends with a
  /// line feed when its line did (`ended`), and "%%" becomes "%" (`percents`: there may be any).
  void read_item(std::string_view key, std::string_view value, bool ended, bool percents);
};
