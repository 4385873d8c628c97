#pragma once

/// The framework values and containers that the library's interface is written in: integer points and rectangles,
/// strings, growable arrays, pointer lists and maps, the root object class and the archive. They keep the names and
/// behaviour that host programs know, and hold nothing that the library does not use.

#include <algorithm>
#include <bit>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "qvtools/api.h"
#include "qvtools/system/native_names.h"

/// An integer size.
struct CSize {
  int cx = 0;
  int cy = 0;
  CSize() = default;
  CSize(int width, int height) : cx(width), cy(height) {}
  friend bool operator==(const CSize&, const CSize&) = default;
};

/// An integer point, in device units. Any structure with integer members x and y (the system's own point, say)
/// converts to it.
struct CPoint {
  int x = 0;
  int y = 0;
  CPoint() = default;
  CPoint(int px, int py) : x(px), y(py) {}
  template <class P>
  requires(!std::is_same_v<P, CPoint> &&
           requires(const P& p) {
             requires std::is_integral_v<std::remove_cvref_t<decltype(p.x)>>;
             requires std::is_integral_v<std::remove_cvref_t<decltype(p.y)>>;
           }) CPoint(const P& p)
      : x(static_cast<int>(p.x)), y(static_cast<int>(p.y)) {}
  friend bool operator==(const CPoint&, const CPoint&) = default;
};

/// An integer rectangle. Nothing normalises it.
struct CRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  CRect() = default;
  CRect(int l, int t, int r, int b) : left(l), top(t), right(r), bottom(b) {}
  /// Its width and height; negative where the sides stand the other way round.
  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  friend bool operator==(const CRect&, const CRect&) = default;
};

#if !QV_SYSTEM_DEFINES_POINT
/// The names that Windows has for them.
using POINT = CPoint;
using RECT = CRect;
#endif

/// A text of bytes in the code page (GBK). Converts to `const char*` wherever a text argument is read.
class CString {
 public:
  CString() = default;
  /// A copy of the text; a null one is empty.
  CString(const char* text) : text_(text ? text : "") {}
  /// The first `length` bytes at `text`; a negative length is 0.
  CString(const char* text, int length) : text_(text, static_cast<std::size_t>(std::max(length, 0))) {}
  explicit CString(std::string text) : text_(std::move(text)) {}

  /// The text, terminated, as long as the object is not changed.
  operator const char*() const { return text_.c_str(); }
  const std::string& str() const { return text_; }
  /// Its bytes, whether there are none, and taking them away.
  int GetLength() const { return static_cast<int>(text_.size()); }
  bool IsEmpty() const { return text_.empty(); }
  void Empty() { text_.clear(); }
  /// The byte at index i, which must be below the length.
  char GetAt(int i) const { return text_[static_cast<std::size_t>(i)]; }
  /// The first n bytes; all of them when n exceeds the length.
  CString Left(int n) const { return CString(text_.substr(0, clamp(n))); }
  /// The last n bytes; all of them when n exceeds the length.
  CString Right(int n) const { return CString(text_.substr(text_.size() - clamp(n))); }
  /// The bytes from index first on, n of them at most.
  CString Mid(int first, int n = INT_MAX) const {
    return CString(text_.substr(clamp(first), static_cast<std::size_t>(n < 0 ? 0 : n)));
  }
  /// Upper case of ASCII letters; two-byte characters are stepped over whole, so a letter in their second byte stays.
  QV_API void MakeUpper();
  /// Texts are joined and compared byte by byte.
  CString& operator+=(const char* text) { return text_ += text, *this; }
  CString& operator+=(char c) { return text_ += c, *this; }
  friend CString operator+(CString a, const char* b) { return a += b; }
  friend CString operator+(CString a, const CString& b) { return a += b.text_.c_str(); }
  friend CString operator+(const char* a, const CString& b) { return CString(a) += b.text_.c_str(); }
  friend bool operator==(const CString& a, const CString& b) { return a.text_ == b.text_; }
  friend bool operator==(const CString& a, const char* b) { return a.text_ == b; }

 private:
  std::size_t clamp(int n) const {
    return n < 0 ? 0 : std::min<std::size_t>(static_cast<std::size_t>(n), text_.size());
  }
  std::string text_;
};

class CArchive;

/// The root of the framework's object classes.
class QV_API CObject {
 public:
  virtual ~CObject();
  /// Stores or loads the object, as the archive says. The root stores nothing.
  virtual void Serialize(CArchive& /*archive*/) {}
};

/// A stream of little-endian values for `Serialize`, storing to or loading from a block of bytes in memory. Loading
/// past the end gives zeros and sets the failed flag; nothing is read beyond the block.
class QV_API CArchive {
 public:
  /// An empty archive to store into.
  CArchive() = default;
  /// An archive that loads from the given bytes, which it copies.
  explicit CArchive(std::string_view bytes) : bytes_(bytes), storing_(false) {}

  /// Which of both it does.
  bool IsStoring() const { return storing_; }
  bool IsLoading() const { return !storing_; }
  /// Appends n bytes.
  void Write(const void* data, std::size_t n) { bytes_.append(static_cast<const char*>(data), n); }
  /// Takes n bytes; returns false, with zeros in `data`, when fewer are left.
  bool Read(void* data, std::size_t n);
  /// The bytes that are left to load.
  std::size_t Remaining() const { return bytes_.size() - position_; }
  /// True when a load ran past the end.
  bool Failed() const { return failed_; }
  /// The bytes stored so far.
  const std::string& Bytes() const { return bytes_; }

  /// Store and load one value of four bytes.
  CArchive& operator<<(float v) { return Write(&v, sizeof v), *this; }
  CArchive& operator<<(std::uint32_t v) { return Write(&v, sizeof v), *this; }
  CArchive& operator<<(std::int32_t v) { return *this << static_cast<std::uint32_t>(v); }
  CArchive& operator>>(float& v) { return Read(&v, sizeof v), *this; }
  CArchive& operator>>(std::uint32_t& v) { return Read(&v, sizeof v), *this; }
  CArchive& operator>>(std::int32_t& v) { return Read(&v, sizeof v), *this; }

  /// Stores or loads the values one after another.
  template <class... Values>
  void Exchange(Values&... values) {
    storing_ ? (*this << ... << values) : (*this >> ... >> values);
  }

 private:
  std::string bytes_;
  std::size_t position_ = 0;
  bool storing_ = true;
  bool failed_ = false;
};

/// A growable array of values. Without a set grow-by it grows by an eighth of its size, at least 4 and at most 1024
/// elements at a time. Indices must be below the size. ARG is the argument type of the interface that host programs
/// name; elements are taken by constant reference.
template <class T, class ARG = const T&>
class CArray : public CObject {
 public:
  CArray() = default;
  /// The number of elements, and the index of the last: -1 when there are none.
  int GetSize() const { return static_cast<int>(items_.size()); }
  int GetUpperBound() const { return GetSize() - 1; }
  /// Makes the array n elements long (new ones default-constructed); a growBy of 0 or more replaces the grow-by.
  void SetSize(int n, int growBy = -1) {
    if (growBy >= 0) growBy_ = growBy;
    const auto size = static_cast<std::size_t>(n < 0 ? 0 : n);
    if (size > items_.capacity()) items_.reserve(size);
    items_.resize(size);
  }
  /// An element, by each of the names that host programs use; and all of them in one block.
  T& operator[](int i) { return items_[static_cast<std::size_t>(i)]; }
  const T& operator[](int i) const { return items_[static_cast<std::size_t>(i)]; }
  T& ElementAt(int i) { return (*this)[i]; }
  const T& GetAt(int i) const { return (*this)[i]; }
  void SetAt(int i, const T& value) { (*this)[i] = value; }
  T* GetData() { return items_.data(); }
  const T* GetData() const { return items_.data(); }
  /// Appends a copy of the value and returns its index.
  int Add(const T& value) {
    if (items_.size() == items_.capacity()) {
      const T copy = value;
      items_.reserve(items_.size() + step());
      items_.push_back(copy);
    } else {
      items_.push_back(value);
    }
    return GetUpperBound();
  }
  /// Inserts before an element, and takes out a number of them; both move what follows.
  void InsertAt(int i, const T& value) { items_.insert(items_.begin() + i, value); }
  void RemoveAt(int i, int count = 1) { items_.erase(items_.begin() + i, items_.begin() + i + count); }
  /// Takes out all and gives their memory back; `FreeExtra` gives back what is not in use.
  void RemoveAll() { std::vector<T>().swap(items_); }
  void FreeExtra() { items_.shrink_to_fit(); }
  /// Becomes a copy of the other array, and changes places with it.
  void Copy(const CArray& other) { items_ = other.items_; }
  void Swap(CArray& other) { items_.swap(other.items_); }
  /// For range-based loops.
  T* begin() { return items_.data(); }
  T* end() { return items_.data() + items_.size(); }
  const T* begin() const { return items_.data(); }
  const T* end() const { return items_.data() + items_.size(); }

 protected:
  /// Copied by derived classes only; others say `Copy`.
  CArray(const CArray&) = default;
  CArray& operator=(const CArray&) = default;

 private:
  std::size_t step() const {
    if (growBy_ > 0) return static_cast<std::size_t>(growBy_);
    const std::size_t eighth = items_.size() / 8;
    return eighth < 4 ? 4 : eighth > 1024 ? 1024 : eighth;
  }
  std::vector<T> items_;
  int growBy_ = 0;
};

namespace qv::detail {
struct ListSlot {
  void* data;
};
}  // namespace qv::detail

/// A place in a pointer list; null is the end. It stays valid while its pointer is in the list.
using POSITION = qv::detail::ListSlot*;

/// A list of pointers that it does not own, walked from its head. Pointers lie side by side in blocks: a walk runs at
/// the speed of an array.
class QV_API CPtrList : public CObject {
 public:
  /// The number of pointers that a block holds at least.
  explicit CPtrList(int blockSize = 10)
      : blockBytes_(std::bit_ceil(sizeof(Block) + sizeof(void*) * static_cast<std::size_t>(std::max(blockSize, 1)))) {}
  ~CPtrList() override;
  CPtrList(const CPtrList&) = delete;
  CPtrList& operator=(const CPtrList&) = delete;

  /// The number of pointers.
  int GetCount() const { return static_cast<int>(count_); }
  bool IsEmpty() const { return count_ == 0; }
  /// The first and the last pointer, of a list that is not empty.
  void* GetHead() const { return first_->begin->data; }
  void* GetTail() const { return last_->end[-1].data; }
  /// Their places; null when the list is empty.
  POSITION GetHeadPosition() const { return first_ ? first_->begin : nullptr; }
  POSITION GetTailPosition() const { return last_ ? last_->end - 1 : nullptr; }
  /// The pointer at the position, which moves on to the next.
  void* GetNext(POSITION& position) const {
    void* data = position->data;
    const Block* const block = block_of(position);
    if (++position == block->end) position = block->next ? block->next->begin : nullptr;
    return data;
  }
  /// The pointer at the position.
  void* GetAt(POSITION position) const { return position->data; }
  /// Adds a pointer at the end or the head; null, with the list unchanged, when memory runs out.
  POSITION AddTail(void* data);
  POSITION AddHead(void* data);
  /// Takes the first pointer out of the list, which must not be empty.
  void* RemoveHead();
  /// Empties the list and frees its blocks, not what the pointers point to.
  void RemoveAll();
  /// Moves all pointers of another list, one that was made for blocks of the same size, to the end of this one. It
  /// needs no memory.
  void TakeAll(CPtrList& other);

 private:
  /// The head of a block; its pointers follow it. Blocks begin at multiples of their size, so that a position's block
  /// is found by the position's address.
  struct Block {
    Block* next;
    POSITION begin;  // the pointers in use
    POSITION end;
  };
  Block* block_of(POSITION position) const {
    return reinterpret_cast<Block*>(reinterpret_cast<std::uintptr_t>(position) & ~(blockBytes_ - 1));
  }
  POSITION first_slot(Block* block) const { return reinterpret_cast<POSITION>(block + 1); }
  POSITION end_slot(Block* block) const {
    return reinterpret_cast<POSITION>(reinterpret_cast<char*>(block) + blockBytes_);
  }
  Block* new_block() const;
  void delete_first();

  std::size_t blockBytes_;  // a power of two
  Block* first_ = nullptr;
  Block* last_ = nullptr;
  std::size_t count_ = 0;
};

/// A map from texts to pointers, which it does not own.
class CMapStringToPtr : public CObject {
 public:
  /// An empty map; the number is taken for old callers and does nothing.
  explicit CMapStringToPtr(int = 10) {}
  /// The number of keys.
  int GetCount() const { return static_cast<int>(items_.size()); }
  bool IsEmpty() const { return items_.empty(); }
  /// True, with the pointer in `value`, when the key is present.
  bool Lookup(const char* key, void*& value) const {
    const auto found = items_.find(key);
    if (found == items_.end()) return false;
    value = found->second;
    return true;
  }
  /// Sets the pointer of a key, present or not.
  void SetAt(const char* key, void* value) { items_[key] = value; }
  /// Takes a key out; false when it was not there.
  bool RemoveKey(const char* key) { return items_.erase(key) > 0; }
  /// Takes all keys out.
  void RemoveAll() { items_.clear(); }
  /// For range-based loops over pairs of key and pointer, in no order.
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

 private:
  std::unordered_map<std::string, void*> items_;
};
