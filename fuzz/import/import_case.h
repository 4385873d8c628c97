#pragma once

/// One import of any bytes: whatever the file holds, the document that is made can be measured, saved and read again.

#include "../harness.h"
#include "qvtools/import/import.h"

namespace qvfuzz {

inline void import_case(const std::string& bytes) {
  static QuietHost host;
  qv::SetHost(&host);
  QV_ERROR_CODE = 0;
  const std::string path = scratch().write("in.dxf", bytes);
  qv::ImportOptions options;
  options.mostOfReference = 2000;
  options.mostOfHatch = 2000;
  // The last byte chooses what is asked for.
  const unsigned choice = bytes.empty() ? 0 : static_cast<unsigned char>(bytes.back());
  if (choice % 5 == 1) options.explode = true;
  if (choice % 5 == 2) options.unit = qv::Unit::Millimetre;
  if (choice % 5 == 3) options.layout = "Layout1";
  if (choice % 5 == 4) options.encoding = qv::CodePage::ShiftJis;
  DXF dxf;
  dxf.New_MemDxf();
  qv::ImportReport report;
  if (!qv::Import(path.c_str(), dxf, options, report)) return;
  report.text();
  dxf.GetFRect();
  dxf.GetFRect3D(0.5F, 0.7F);
  require(dxf.Write_MemDxf_To_File(scratch().path("out.dxf").c_str()) == 1);
  // The flat reader finds all entities again.
  DXF again;
  again.New_MemDxf();
  require(again.Read_FileDxf_To_Mem(scratch().path("out.dxf").c_str()) == 1);
  require(again.m_EntityList.GetCount() == dxf.m_EntityList.GetCount());
  require(again.m_nLayer == dxf.m_nLayer && again.m_nLType == dxf.m_nLType && again.m_nStyle == dxf.m_nStyle);
}

}  // namespace qvfuzz
