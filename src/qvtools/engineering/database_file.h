#pragma once

/// The segmented text database: named groups of "key = value" lines in one file, found again by an index of byte
/// positions at its end.
///
/// The file, with CR LF line ends on every system: an optional version line; for each segment "[ NAME ]" and its lines
/// "KEY = VALUE", in the order of writing; "[Index]"; a line "NAME = START END" for each segment, byte offsets of its
/// header line and of the end of its last line; and the trailer "IndexPosition = " with the offset of the "[Index]"
/// line in 12 places, 30 bytes in all. Lines that begin with "##" are comments; lines without " = ", and lines below 5
/// bytes (line feed included), are passed over. A line is read up to 2,047 bytes, the rest of it is dropped.

#include <cstdint>
#include <cstdio>
#include <memory>

#include "qvtools/platform/framework.h"

/// When the disk fails or memory runs out: report 301, and the result that says so; of a call that writes, that of all
/// later ones too, up to `Close_File`, which then leaves a file of before.
class QV_API CDataBaseFile : public CObject {
 public:
  /// What a file is opened for.
  enum IO_MODE { IO_READ = 0, IO_WRITE = 1 };

  /// The room that `Get_Item` needs for any value, the terminator included.
  static constexpr int kValueSize = 2048;
  /// The library's own version text.
  static constexpr char kVersion[] = "CDataBaseFile Version 1.00 1998-2-7";

  CDataBaseFile();
  /// Closes the file.
  ~CDataBaseFile() override;
  CDataBaseFile(const CDataBaseFile&) = delete;
  CDataBaseFile& operator=(const CDataBaseFile&) = delete;

  /// Opens a file of the work directory, after closing one that is open. Returns 1. Writing: a new file, which takes
  /// its place and its name when it is closed (`qv::SavedFile`): whenever the program stops before, the file of that
  /// name is the one of before; 0 after the stop box of `open_file`. Reading: 0, silently, when the file is missing, or
  /// when it has no index that can be read (it was never closed, is cut, or its positions lie outside it); it is then
  /// open but without segments.
  int Open_File(const char* name, IO_MODE mode);
  /// When writing, writes the index. Returns 1, or 0 when the index or anything before it could not be written (a full
  /// disk, positions beyond 12 digits or a `long`; a file of before stays then), or when no file is open for writing.
  /// Closing again changes nothing.
  int Close_File();

  /// Writes a version line; nothing without a file open for writing.
  void Write_FileVersion(const char* text);
  /// Reads a line at the current position (behind the last segment read, else the start): 1 when its first 289 bytes
  /// contain `text`, 0 otherwise or without a file open for reading.
  int Check_FileVersion(const char* text);

  /// Begins a segment; its name is formatted as `printf` does and cut at 299 bytes. Other readers of the format take
  /// names without blanks only. A name that is already used in the file, is empty, holds a line end or begins with "##"
  /// opens no segment.
  void Begin_Segment(const char* format, ...) QV_FORMAT(2, 3);
  /// The same with a name that is no format, such as one that was read from a file.
  void Begin_Named_Segment(const char* name);
  /// Keeps a value, formatted, for `Write_Segment`; the first value of a key stays.
  void Add_Item(const char* key, const char* format, ...) QV_FORMAT(3, 4);
  /// The same with a value that is no format. Quirk: as all values are, it is read back with "%%" as "%".
  void Add_Text_Item(const char* key, const char* value);
  /// Writes the items kept, in the order of adding, and ends the segment. Returns 1; 0 without an open segment or after
  /// a failed write.
  int Write_Segment();
  /// Writes an item at once, without up to three line feeds at its end. A percent sign to be read back is given doubled
  /// in the value itself. Key and value are cut to fit a line of 2,047 bytes, the key at 999. Returns 1; 0 without an
  /// open segment or after a failed write.
  int Write_Item(const char* key, const char* format, ...) QV_FORMAT(3, 4);
  /// The same for a literal value, whose percent signs it doubles; cut at 999 bytes after doubling.
  int Write_Item1(const char* key, const char* value);
  /// Writes a formatted line, cut at 2,046 bytes. Returns 1; 0 without a file open for writing or after a failed write.
  int Write_Line(const char* format, ...) QV_FORMAT(2, 3);
  /// The same with a text that is no format.
  int Write_Text_Line(const char* text);
  /// Ends the segment at the current position; it stays open for more items, which need another `End_Segment`.
  void End_Segment();

  /// Reads the items of a segment, whose name is formatted. Values keep the line feed at their end, and "%%" in the
  /// file is "%" in them; of equal keys the first counts. Returns 1; 0, with no items, when there is no such segment or
  /// no file open for reading.
  int Read_Segment(const char* format, ...) QV_FORMAT(2, 3);
  /// The same with a name that is no format.
  int Read_Named_Segment(const char* name);
  /// Copies a value to `out`, which holds `kValueSize` bytes. Returns 1; 0 with the empty text when the key is absent.
  int Get_Item(const char* key, char* out);
  /// The value cut at 299 bytes, in a buffer that the next call overwrites; null when the key is absent.
  char* Get_Item(const char* key);

  /// The segments of the file, in its order, and the items last read or added: their number, names and keys, indices
  /// from 0; the empty text for an index that there is not.
  int Get_SegmentCount() const;
  CString Get_SegmentName(int i) const;
  int Get_ItemCount() const;
  CString Get_ItemKey(int i) const;

 private:
  static constexpr int kNameSize = 300;
  struct Tables;

  int open_to_read(const char* name);
  int open_to_write(const char* name);
  bool is_writing() const { return m_pFile && m_Mode == IO_WRITE; }
  bool is_reading() const { return m_pFile && m_Mode == IO_READ; }
  bool can_write_item() const { return m_bSegment && is_writing(); }
  int status() const;
  /// Whether an entry was added that was not there; where memory runs out, nothing that is written from then on is
  /// good.
  template <class Table, class Value>
  bool added_to(Table& table, std::string_view key, const Value& value, std::string_view more = {});
  void end_segment();

  char m_szSegment[kNameSize] = "";
  std::unique_ptr<Tables> m_Tables;
  std::FILE* m_pFile = nullptr;
  IO_MODE m_Mode = IO_READ;
  char m_szItem[kNameSize] = "";
  bool m_bSegment = false;       // the last of the segments is open
  std::int64_t m_nPosition = 0;  // reading: where the next line would be read
};

/// The self-check of the class: writes the database "qvtest.dat" in the work directory and shows "Write OK", reads it
/// back and shows "Read Ok"; what is wrong is shown instead: "Write Error !", "File Version Error !" or "Read Error !".
QV_API void test_database();
