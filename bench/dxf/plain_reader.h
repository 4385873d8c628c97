#pragma once

/// The baseline of reading: fgets, strcmp and atof into the same records on the heap. It reads the mixed drawing only.

#include <cstdlib>

#include "qvtools/text/gbk_text.h"
#include "workload.h"

namespace qvbench {

class PlainReader {
 public:
  explicit PlainReader(const char* path) : file_(std::fopen(path, "rb")) {}
  ~PlainReader() {
    std::fclose(file_);
    for (POSITION at = list.GetHeadPosition(); at;) delete static_cast<ACAD_ENTITY*>(list.GetNext(at));
  }
  void read() {
    while (next() && std::strcmp(value_, "ENTITIES") != 0) {
    }
    next();
    while (code_ == 0 && std::strcmp(value_, "ENDSEC") != 0) entity();
  }
  CPtrList list;

 private:
  static void strip(char* line) {
    std::size_t n = std::strlen(line);
    while (n > 0 && (line[n - 1] == '\n' || line[n - 1] == '\r')) line[--n] = '\0';
  }
  bool next() {
    char code[300];
    if (!std::fgets(code, sizeof code, file_) || !std::fgets(value_, sizeof value_, file_)) return false;
    strip(value_);
    code_ = std::atoi(code);
    return true;
  }
  float real() const { return static_cast<float>(std::atof(value_)); }
  void point(int code, qv::Point3& p) const {
    if (code_ == code) p.x = real();
    if (code_ == code + 10) p.y = real();
    if (code_ == code + 20) p.z = real();
  }
  template <class Record>
  void attributes(Record& r) const {
    if (code_ == 8) qv::copy_text(r.m_szLayer, value_);
    if (code_ == 6) qv::copy_text(r.m_szLType, value_);
    if (code_ == 62) r.m_nColor = std::atoi(value_);
  }
  template <class Record, class Take>
  void groups(Record& r, const Take& take) {
    while (next() && code_ != 0) {
      attributes(r);
      take(r);
    }
  }
  template <class Record, class Take>
  Record* record(const Take& take) {
    auto* r = new Record;
    groups(*r, take);
    list.AddTail(r);
    return r;
  }
  void entity() {
    if (std::strcmp(value_, "LINE") == 0) {
      record<ACAD_LINE>([this](ACAD_LINE& r) {
        point(10, r.m_Start);
        point(11, r.m_End);
      });
    } else if (std::strcmp(value_, "CIRCLE") == 0) {
      record<ACAD_CIRCLE>([this](ACAD_CIRCLE& r) {
        point(10, r.m_Center);
        if (code_ == 40) r.m_fRadius = real();
      });
    } else if (std::strcmp(value_, "ARC") == 0) {
      record<ACAD_ARC>([this](ACAD_ARC& r) {
        point(10, r.m_Center);
        if (code_ == 40) r.m_fRadius = real();
        if (code_ == 50) r.m_fStartAngle = real();
        if (code_ == 51) r.m_fEndAngle = real();
      });
    } else if (std::strcmp(value_, "TEXT") == 0) {
      record<ACAD_TEXT>([this](ACAD_TEXT& r) {
        point(10, r.m_Insert);
        point(11, r.m_Align);
        if (code_ == 40) r.m_fHeight = real();
        if (code_ == 41) r.m_fWidthFactor = real();
        if (code_ == 50) r.m_fRotation = real();
        if (code_ == 72) r.m_nJustify = std::atoi(value_);
        if (code_ == 1) qv::copy_text(r.m_szText, value_);
        if (code_ == 7) qv::copy_text(r.m_szStyle, value_);
      });
    } else {
      polyline();
    }
  }
  void polyline() {
    auto* r = record<ACAD_POLYLINE>([this](ACAD_POLYLINE& p) {
      if (code_ == 70) p.m_nFlags = std::atoi(value_);
      if (code_ == 40) p.m_fStartWidth = real();
      if (code_ == 41) p.m_fEndWidth = real();
    });
    while (std::strcmp(value_, "VERTEX") == 0) {
      ACAD_VERTEX vertex;
      groups(vertex, [this](ACAD_VERTEX& v) {
        point(10, v.m_Point);
        if (code_ == 70) v.m_nFlags = std::atoi(value_);
        if (code_ == 40) v.m_fStartWidth = real();
        if (code_ == 41) v.m_fEndWidth = real();
        if (code_ == 42) v.m_fBulge = real();
      });
      r->m_Vertices.Add(vertex);
    }
    next();
  }

  std::FILE* file_;
  int code_ = 0;
  char value_[300] = "";
};

}  // namespace qvbench
