#pragma once

/// The base of a computation module's data: its name, the base name of its files, and its result queries, each with a
/// drawing and a report that the module produces.

#include <algorithm>
#include <cstdio>

#include "qvtools/platform/framework.h"

/// The name and the queries are kept as comment lines of the module's data file: "##Name NAME", and for each query
/// "##ChaXun CAPTION DRAWING REPORT". Lines are written to a stream as the host opened it
/// (that of a `qv::SavedFile` for a file that is whole or absent).
class QV_API CQvBaseData {
 public:
  static constexpr int kQueries = 30;  ///< queries at most

  CString m_strName;             ///< name of the data set
  CString m_strFile;             ///< base name of its files
  int m_nQuery = 1;              ///< queries in use; taken within 0 to 30
  CString m_strQuery[kQueries];  ///< captions
  CString m_strDxf[kQueries];    ///< result drawings, relative to the work directory
  CString m_strRtf[kQueries];    ///< result reports, relative to the work directory

  /// No name, files "NONAME", and one query with the files NONAME.DXF and NONAME.RTF.
  CQvBaseData();

  /// Copies are of their own.
  CQvBaseData(const CQvBaseData&) = default;
  CQvBaseData& operator=(const CQvBaseData&) = default;
  virtual ~CQvBaseData();

  /// Stores the module's file names from a base name. Does nothing and returns 0 here.
  virtual int SetFileName(CString /*base*/) { return 0; }
  /// Calls the virtual one with the base name of a path, without drive, directory and extension. Returns 1, or 0 when
  /// memory runs out.
  int SetFileName(const char* path);

  /// Writes the marker line "##MARK". Returns 1, or 0 when the write failed.
  int SetBiaoShi(std::FILE* fp, const char* mark);
  /// Reads a line: 1 when its first 289 bytes contain `mark`; 0, after a message box, when not or at the end.
  int CheckBiaoShi(std::FILE* fp, const char* mark);
  /// Writes the name and the queries. Returns 1, or 0 when a write failed.
  int SaveData(std::FILE* fp);
  /// Reads the name from the first line, from the start of the file on, that contains "##Name": what stands from its
  /// eighth byte to its end. It is empty when there is no such line. Queries are not read. Returns 1; 0, after report
  /// 301 and with the name as it was, when the disk fails or memory runs out.
  int LoadData(std::FILE* fp);

  /// The drawing and the report of query i, which is taken within 0 to the last query in use.
  CString GetDxfFileName(int i) const { return m_strDxf[clamped(i)]; }
  CString GetRtfFileName(int i) const { return m_strRtf[clamped(i)]; }
  /// Removes the drawings and reports of the queries in use from the work directory, silently. Returns 1.
  int Remove_Result_Files();

 private:
  int queries() const { return std::clamp(m_nQuery, 0, kQueries); }
  int clamped(int i) const { return std::clamp(i, 0, std::max(queries() - 1, 0)); }
};
