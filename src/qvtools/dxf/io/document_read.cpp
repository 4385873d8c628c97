#include <algorithm>

#include "qvtools/dxf/io/internal/record_reader.h"
#include "qvtools/dxf/model/document.h"
#include "qvtools/services/captions.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/services/services.h"
#include "qvtools/system/internal/file_calls.h"
#include "qvtools/system/textfile.h"

using namespace qv::detail;

int DXF::open_to_read(const char* fileName) {
  close_file();
  qv::copy_text(m_szFileName, fileName);
  m_fp = qv::open_text(fileName, "rb");
  if (!m_fp) return 0;
  end_ = End::Whole;
  const bool named = unless_out_of_memory([&] { return source_ = link_target(fileName), true; }, false);
  reader_.reset(named ? new (std::nothrow) GroupReader(m_fp, GroupReader::Stream::Own) : nullptr);
  if (reader_ && !reader_->failed()) {
    m_nOpenMode = 1;
    return 1;
  }
  if (named) tell_out_of_memory();
  close_file();
  return 0;
}

/// Takes notice of a disk that failed, or of memory that ran out, while the file was read.
void DXF::note_end() {
  if (reader_ && reader_->failed()) end_ = End::CutShort;
}

bool DXF::is_cut_short_of(const char* fileName) const {
  return IsCutShort() && unless_out_of_memory([&] { return is_same_file(source_.c_str(), fileName); }, true);
}

void DXF::close_file() {
  reader_.reset();
  if (m_fp) std::fclose(m_fp);
  m_fp = nullptr;
}

int DXF::Open(const char* fileName) {
  if (!open_to_read(fileName)) return 0;
  const bool tables = Read_Tables() != 0;
  const bool entities = tables && Find_Start_Entities();
  note_end();
  if (!tables) tell_error(301, qv::captions::kReadingTables);
  if (tables && !entities) tell_error(301, qv::captions::kNoEntitySection);
  return entities && !IsCutShort();
}

int DXF::find_section(std::string_view keyword) {
  if (m_nOpenMode != 1 || !reader_) return 0;
  reader_->rewind();
  bool named = false;  // the line before says that a name follows
  for (Line line; reader_->next_line(line); named = line.is("  2"))
    if (named && line.is(Word(keyword))) return 1;
  return 0;
}

int DXF::Read_Tables() {
  if (!Find_Start_Tables()) return 0;
  while (reader_->next()) {
    if (reader_->at(0, "ENDSEC")) return 1;
    if (reader_->at(0, "TABLE")) Read_One_Table();
  }
  return 0;
}

int DXF::Read_One_Table() {
  if (m_nOpenMode != 1 || !reader_) return 0;
  GroupReader& in = *reader_;
  while (in.next() && !in.at(0, "ENDTAB")) {
    bool read = false;
    if (in.at(2, "LTYPE"))
      read = read_table(m_pLType, m_nLType, roomLType_, "Num_LType Error !", "Out of Memery When Read LType!");
    else if (in.at(2, "LAYER"))
      read = read_table(m_pLayer, m_nLayer, roomLayer_, "Num_Layer Error !", "Out of Memery When Read Layer!");
    else if (in.at(2, "STYLE"))
      read = read_table(m_pStyle, m_nStyle, roomStyle_, "Num_Style Error !", "Out of Memery When Read Style!");
    if (read) return 1;
  }
  return 0;
}

namespace {

/// The number of entries that the table at which the reader stands declares: its group 70; 0 when it has none.
int declared_entries(GroupReader& in) {
  int count = 0;
  in.look_ahead([&] {
    if (in.code() == 0) return !ends_record(in.value());
    if (in.code() != 70) return true;
    count = integer_of(in.value());
    return false;
  });
  return count;
}

/// Reads entries one behind the other. An entry that is missing keeps its defaults.
template <class Entry>
void read_entries(GroupReader& in, Entry* table, int count) {
  for (int i = 0; i < count; ++i) {
    while (in.next()) {
      if (in.at(0, kOpening<Entry>)) {
        read_opened(in, table[i]);
        break;
      }
      // Quirk: the pair that ends the search for an entry of a table is gone, so every missing entry takes one pair
      // more, be it of the next table.
      if (in.code() == 0 && ends_record(in.value())) break;
    }
  }
}

}  // namespace

template <class Entry>
bool DXF::read_table(std::unique_ptr<Entry[]>& table, int& count, int& capacity, const char* countMessage,
                     const char* memoryMessage) {
  constexpr int kMaxEntries = 1000;
  const int declared = declared_entries(*reader_);
  if (declared < 1 || declared > kMaxEntries) {
    tell_error(301, countMessage);
    return false;
  }
  std::unique_ptr<Entry[]> entries(new (std::nothrow) Entry[static_cast<std::size_t>(declared)]);
  if (!entries) {
    reader_->fail();
    tell_error(301, memoryMessage);
    return false;
  }
  table = std::move(entries);
  count = capacity = declared;
  read_entries(*reader_, table.get(), declared);
  return true;
}

int DXF::Read_One_Block() {
  if (m_nOpenMode != 1 || !reader_) return 0;
  GroupReader& in = *reader_;
  while (in.next()) {
    if (in.at(0, "ENDSEC") || in.at(0, "EOF") || in.at(0, "ENDBLK")) return 0;
    if (!in.at(0, "BLOCK")) continue;
    in.unread();
    const int read = read_record(in, m_Block);
    return note_end(), read;
  }
  return note_end(), 0;
}

ACAD_Entity_Type DXF::Read_One_Entity() {
  if (m_nOpenMode != 1) return ACAD_TYPE_NONE;
  if (!reader_) return ACAD_TYPE_END;
  const ACAD_Entity_Type type = read_entity(*reader_, *this, Within::Document);
  if (reader_->failed()) return note_end(), ACAD_TYPE_NONE;
  if (type == ACAD_TYPE_END && !reader_->at(0, "ENDSEC") && !reader_->at(0, "EOF")) end_ = End::Early;
  if (type == ACAD_TYPE_TEXT && !m_Text.m_bWidthGiven) {
    const ACAD_STYLE* style = find_style(m_Text.m_szStyle);
    if (style) m_Text.m_fWidthFactor = style->m_fWidthFactor;
  }
  return type;
}

namespace {

/// A record of its own of what was read. A polyline's vertices move into it: they need not be copied again.
ACAD_ENTITY* take(qv::WorkingRecords& records, ACAD_Entity_Type type) {
  if (type != ACAD_TYPE_POLYLINE) return qv::CloneEntity(*records.Of(type));
  CArray<ACAD_VERTEX, ACAD_VERTEX&> vertices;
  vertices.Swap(records.m_Polyline.m_Vertices);
  auto* polyline = static_cast<ACAD_POLYLINE*>(qv::CloneEntity(records.m_Polyline));
  if (polyline) polyline->m_Vertices.Swap(vertices);
  return polyline;
}

/// The size of an open file, whose position stays; 0 when it cannot be told.
long size_of(std::FILE* file) {
  const long at = std::ftell(file);
  if (at < 0 || std::fseek(file, 0, SEEK_END) != 0) return 0;
  const long size = std::ftell(file);
  std::fseek(file, at, SEEK_SET);
  return size;
}

}  // namespace

void DXF::load_blocks() {
  if (!Find_Start_Blocks()) return;
  const auto records = qv::detail::records_of_kept_blocks();
  if (!records) return out_of_memory();
  while (Read_One_Block()) {
    auto* block = new (std::nothrow) ACAD_BLOCK(records);
    if (!block || !block->Copy(&m_Block) || !m_BlockList.AddTail(block)) {
      delete block;
      return out_of_memory();
    }
  }
}

void DXF::out_of_memory() {
  reader_->fail();
  tell_out_of_memory();
}

bool DXF::load_entities(const std::function<bool(double share)>& progress) {
  constexpr int kBetweenReports = 4096;
  const double size = progress ? static_cast<double>(size_of(m_fp)) : 0;
  int unreported = 0;
  for (ACAD_Entity_Type type; (type = Read_One_Entity()) < ACAD_TYPE_NONE;) {
    ACAD_ENTITY* copy = take(*this, type);
    if (!copy || !m_EntityList.AddTail(copy)) {
      delete copy;
      return out_of_memory(), false;
    }
    if (!progress || ++unreported < kBetweenReports) continue;
    unreported = 0;
    if (!progress(size > 0 ? std::clamp(static_cast<double>(std::ftell(m_fp)) / size, 0.0, 1.0) : 0)) return false;
  }
  return true;
}

int DXF::Read_FileDxf_To_Mem(const char* fileName, const std::function<bool(double share)>& progress) {
  if (!m_nMemFlag) return tell_once_not_open("The Drawing Is Not In Memory: New_MemDxf Comes First !"), 0;
  if (!open_to_read(fileName)) return 0;
  Read_Tables();
  load_blocks();
  bool loaded = !reader_->failed() && Find_Start_Entities();
  if (loaded && !load_entities(progress)) {
    end_ = End::Early;
    loaded = false;
  }
  loaded = loaded && !reader_->failed();
  note_end();
  close_file();
  return loaded ? 1 : 0;
}
