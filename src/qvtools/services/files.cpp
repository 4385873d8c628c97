#include "qvtools/services/files.h"

#include <atomic>
#include <cstring>
#include <string>

#include "qvtools/services/captions.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/services/internal/work_files.h"
#include "qvtools/services/messages.h"
#include "qvtools/system/filesystem.h"
#include "qvtools/system/textfile.h"
#include "qvtools/text/gbk_text.h"

CString G_strWorkPath;
CString G_strExePath;
int QV_OpenFileNum = 0;

using qv::detail::in_work_path;
using qv::detail::unless_out_of_memory;

namespace qv::detail {

CString in_work_path(const char* name) {
  return G_strWorkPath + name;
}

void count_opened_file() {
  if (std::atomic_ref(QV_OpenFileNum).fetch_add(1) < 0) tell_error(301, "Num File Opend < 0!");
}

}  // namespace qv::detail

namespace {

/// The path without the separators at its end.
std::string trimmed(std::string path) {
  const auto ends_in_separator = [&path] {
    const qv::PathParts parts = qv::split_path(path.c_str());
    return !parts.directory.empty() && parts.base.empty() && parts.extension.empty();
  };
  while (ends_in_separator()) path.pop_back();
  return path;
}

}  // namespace

std::FILE* open_file_no_comment(const char* name, const char* mode) {
  const bool readsText = mode[0] == 'r' && !std::strpbrk(mode, "+b");
  const auto open = [&] {
    const CString path = in_work_path(name);
    return readsText ? qv::open_text_to_read(path) : qv::open_text(path, mode);
  };
  std::FILE* const file = unless_out_of_memory(open, nullptr);
  if (file) qv::detail::count_opened_file();
  return file;
}

std::FILE* open_file(const char* name, const char* mode) {
  std::FILE* const file = open_file_no_comment(name, mode);
  if (!file) tell_error1(301, qv::captions::kCannotOpenFile, name);
  return file;
}

void get_full_path_name(const char* name, char* out) {
  std::strcpy(out, G_strWorkPath);
  std::strcat(out, name);
}

int if_file_exist(const char* path) {
  std::FILE* const file = qv::open_text(path, "rt");
  if (!file) return 0;
  std::fclose(file);
  return 1;
}

int CopyFile_InWorkPath(const char* from, const char* to) {
  return unless_out_of_memory([&] { return qv::copy_file(in_work_path(from), in_work_path(to), true); }, false);
}

void RemoveFile_InWorkPath(const char* name) {
  unless_out_of_memory([&] { qv::remove_file(in_work_path(name)); });
}

void RenameFile_InWorkPath(const char* from, const char* to) {
  unless_out_of_memory([&] {
    const CString target = in_work_path(to);
    if (!qv::rename_file(in_work_path(from), target))
      tell_error1(301, qv::captions::kCannotMakeFile, target.str().c_str());
  });
}

int remove_files(CString dir, const char* pattern) {
  const auto remove = [&] {
    const auto names = qv::list_matches((dir + pattern).str());
    // Quirk: the bare name is removed in the current directory; host programs change the directory first.
    for (const std::string& name : names) qv::remove_file(name.c_str());
    return names.empty() ? 0 : 1;
  };
  return unless_out_of_memory(remove, 0);
}

void copy_files(CString from, CString to, const char* pattern) {
  unless_out_of_memory([&] {
    for (const std::string& name : qv::list_matches((from + pattern).str()))
      qv::copy_file(from + name.c_str(), to + name.c_str(), false);
  });
}

namespace {

bool make_directory(const std::string& path) {
  const std::string directory = trimmed(path);
  if (directory.empty()) return !path.empty();
  if (directory.back() == ':') return true;
  const qv::PathKind kind = qv::path_kind(directory.c_str());
  if (kind != qv::PathKind::Absent) return kind == qv::PathKind::Directory;
  const qv::PathParts parts = qv::split_path(directory.c_str());
  const std::string parent = std::string(parts.drive) + std::string(parts.directory);
  if (!parts.directory.empty() && !make_directory(parent)) return false;
  return qv::create_directory(directory.c_str());
}

}  // namespace

int MakeDirectory(CString path) {
  return unless_out_of_memory([&] { return make_directory(path.str()); }, false);
}

CString ConfirmFileExt(CString path, CString ext) {
  const auto confirm = [&] {
    path.MakeUpper();
    ext.MakeUpper();
    const qv::PathParts parts = qv::split_path(path);
    std::string result = path.str().substr(0, path.str().size() - parts.extension.size());
    if (!ext.IsEmpty() && ext.GetAt(0) != '.') result += '.';
    return CString(result + ext.str());
  };
  return unless_out_of_memory(confirm, CString());
}
