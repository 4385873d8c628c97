#pragma once

/// A table of texts with a value each, in the order in which they were added, found by hashing. Texts stand behind one
/// another in one block, so that filling a table again allocates nothing.

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qv::detail {

template <class Value>
class KeyTable {
 public:
  struct Entry {
    std::uint32_t hash;
    std::uint32_t length;
    std::size_t offset;
    Value value;
  };

  /// Forgets all entries and keeps the memory.
  void clear() {
    entries_.clear();
    texts_.clear();
    slots_.assign(kFewest, 0);
  }
  std::size_t size() const { return entries_.size(); }
  std::string_view key(std::size_t i) const {
    return std::string_view(texts_).substr(entries_[i].offset, entries_[i].length);
  }
  Value& value(std::size_t i) { return entries_[i].value; }
  const Value& value(std::size_t i) const { return entries_[i].value; }

  /// The value of a key, null when it is absent; valid until the next entry is added.
  const Value* find(std::string_view key) const {
    const std::uint32_t slot = slots_.empty() ? 0 : slots_[place(key, hash_of(key))];
    return slot ? &entries_[slot - 1].value : nullptr;
  }
  Value* find(std::string_view key) { return const_cast<Value*>(std::as_const(*this).find(key)); }

  /// Adds an entry; false, with nothing changed, when the key is present.
  bool add(std::string_view key, const Value& value) {
    if (2 * entries_.size() >= slots_.size()) grow();
    const std::uint32_t hash = hash_of(key);
    std::uint32_t& slot = slots_[place(key, hash)];
    if (slot) return false;
    entries_.push_back({hash, static_cast<std::uint32_t>(key.size()), texts_.size(), value});
    texts_.append(key);
    slot = static_cast<std::uint32_t>(entries_.size());
    return true;
  }

 private:
  static constexpr std::size_t kFewest = 64;

  static std::uint32_t hash_of(std::string_view key) {
    std::uint64_t h = 0xCBF29CE484222325u;
    for (const char c : key) h = (h ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
    return static_cast<std::uint32_t>(h ^ h >> 29);
  }
  /// The slot that holds the key or, when it is absent, may take it.
  std::size_t place(std::string_view key, std::uint32_t hash) const {
    std::size_t at = hash & (slots_.size() - 1);
    for (; slots_[at]; at = (at + 1) & (slots_.size() - 1)) {
      const std::size_t i = slots_[at] - 1;
      if (entries_[i].hash == hash && this->key(i) == key) break;
    }
    return at;
  }
  void grow() {
    slots_.assign(slots_.empty() ? kFewest : 2 * slots_.size(), 0);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      std::size_t at = entries_[i].hash & (slots_.size() - 1);
      while (slots_[at]) at = (at + 1) & (slots_.size() - 1);
      slots_[at] = static_cast<std::uint32_t>(i + 1);
    }
  }

  std::vector<Entry> entries_;
  std::string texts_;
  std::vector<std::uint32_t> slots_;  // 0 or an entry's number from 1; a power of two of them, half of them free
};

}  // namespace qv::detail
