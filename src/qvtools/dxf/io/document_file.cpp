#include "qvtools/dxf/io/internal/group_reader.h"
#include "qvtools/dxf/model/document.h"
#include "qvtools/system/textfile.h"
#include "qvtools/text/gbk_text.h"

// The document's life with its file: a stream that is written, or a reader of groups.

DXF::DXF() : m_pCoor(&G_ConCoor) {}

DXF::~DXF() {
  if (m_fp) std::fclose(m_fp);  // before the buffer that it may write from
  delete_drawing();
}

int DXF::New(const char* fileName) {
  Close();
  qv::copy_text(m_szFileName, fileName);
  m_fp = qv::open_text(fileName, "wb");
  if (!m_fp) return 0;
  constexpr std::size_t kBlock = std::size_t{1} << 18;
  if (!streamBuffer_) streamBuffer_.reset(new (std::nothrow) char[kBlock]);
  // Without one of ours the stream keeps its own, smaller buffer.
  if (streamBuffer_) std::setvbuf(m_fp, streamBuffer_.get(), _IOFBF, kBlock);
  m_nMemFlag = 0;
  return create_tables();
}

int DXF::New_MemDxf() {
  Close();
  m_nMemFlag = 1;
  return create_tables();
}

int DXF::Open_MemDxf() {
  m_nMemFlag = 1;
  m_nOpenMode = 1;
  return 1;
}

int DXF::Close() {
  bool good = true;
  if (m_fp) {
    // Quirk: the end is written again after `End_Entity`; readers stop at the first.
    if (m_nOpenMode == 0 && !m_nMemFlag) good = End_Entity() == 1;
    good = std::fclose(m_fp) == 0 && good;
    m_fp = nullptr;
    reader_.reset();
  }
  delete_drawing();
  return good ? 1 : 0;
}
