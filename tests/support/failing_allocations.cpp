#include "support/failing_allocations.h"

#include <climits>
#include <cstdlib>
#include <new>

#if defined(_WIN32)
#include <windows.h>

#include <cstddef>
#include <cstring>
#endif

namespace {

int g_left = INT_MAX;
bool g_throwing = false;

bool passes() {
  return g_left == INT_MAX || g_left-- > 0;
}

void* allocate(std::size_t size) {
  return std::malloc(size ? size : 1);
}

void* allocate_or_throw(std::size_t size) {
  void* const memory = !g_throwing || passes() ? allocate(size) : nullptr;
  if (!memory) throw std::bad_alloc();
  return memory;
}

}  // namespace

namespace qvtest {

FailingAllocations::FailingAllocations(int successes, Which which) {
  g_left = successes;
  g_throwing = which == Which::All;
}
FailingAllocations::~FailingAllocations() {
  g_left = INT_MAX;
  g_throwing = false;
}
bool FailingAllocations::failed() const {
  return g_left < 0;
}

}  // namespace qvtest

void* operator new(std::size_t size) {
  return allocate_or_throw(size);
}
void* operator new[](std::size_t size) {
  return allocate_or_throw(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return passes() ? allocate(size) : nullptr;
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return passes() ? allocate(size) : nullptr;
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}

void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  if (!passes()) return nullptr;
  try {
    return ::operator new(size, alignment);
  } catch (...) {
    return nullptr;
  }
}

#if defined(_WIN32)
namespace {

/// Points the imports of that name in a loaded DLL at the replacement.
void redirect_import(HMODULE module, const char* name, void* replacement) {
  auto* const base = reinterpret_cast<std::byte*>(module);
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* from = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + table.VirtualAddress);
  for (; from->OriginalFirstThunk; ++from) {
    const auto* wanted = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + from->OriginalFirstThunk);
    auto* found = reinterpret_cast<IMAGE_THUNK_DATA*>(base + from->FirstThunk);
    for (; wanted->u1.AddressOfData; ++wanted, ++found) {
      if (IMAGE_SNAP_BY_ORDINAL(wanted->u1.Ordinal)) continue;
      const auto* const import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + wanted->u1.AddressOfData);
      if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) != 0) continue;
      DWORD before;
      VirtualProtect(found, sizeof *found, PAGE_READWRITE, &before);
      found->u1.Function = reinterpret_cast<ULONG_PTR>(replacement);
      VirtualProtect(found, sizeof *found, before, &before);
    }
  }
}

// A DLL takes the operators of its run-time, never the program's.
const bool g_redirected = [] {
  using Allocate = void* (*)(std::size_t, const std::nothrow_t&) noexcept;
  const HMODULE library = GetModuleHandleA("qvtools.dll");
  redirect_import(library, "_ZnwyRKSt9nothrow_t", reinterpret_cast<void*>(static_cast<Allocate>(&operator new)));
  using AllocateAligned = void* (*)(std::size_t, std::align_val_t, const std::nothrow_t&) noexcept;
  redirect_import(library, "_ZnwySt11align_val_tRKSt9nothrow_t",
                  reinterpret_cast<void*>(static_cast<AllocateAligned>(&operator new)));
  redirect_import(library, "_ZnayRKSt9nothrow_t", reinterpret_cast<void*>(static_cast<Allocate>(&operator new[])));
  using AllocateOrThrow = void* (*)(std::size_t);
  redirect_import(library, "_Znwy", reinterpret_cast<void*>(static_cast<AllocateOrThrow>(&operator new)));
  redirect_import(library, "_Znay", reinterpret_cast<void*>(static_cast<AllocateOrThrow>(&operator new[])));
  return true;
}();

}  // namespace
#endif
