#pragma once

/// A table of texts with a value each, in the order in which they were added, found by hashing. Texts stand behind one
/// another in one block, together with what the owner of the table puts there, so that filling a table again allocates
/// nothing.

#include <cstdint>
#include <cstring>
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

  /// Forgets all entries and texts and keeps the memory.
  void clear() {
    entries_.clear();
    texts_.clear();
    slots_.assign(kFewest, 0);
  }
  std::size_t size() const { return entries_.size(); }
  std::string_view key(std::size_t i) const { return {texts_.data() + entries_[i].offset, entries_[i].length}; }
  Value& value(std::size_t i) { return entries_[i].value; }
  const Value& value(std::size_t i) const { return entries_[i].value; }
  /// The block of all texts. The owner may append to it, and change what is no key.
  std::string& texts() { return texts_; }
  const std::string& texts() const { return texts_; }

  /// The value of a key, null when it is absent; valid until the next entry is added.
  const Value* find(std::string_view key) const {
    const std::uint32_t slot = slots_.empty() ? 0 : slots_[place(key, hash_of(key))];
    return slot ? &entries_[slot - 1].value : nullptr;
  }

  /// Adds an entry; false, with nothing changed, when the key is present.
  bool add(std::string_view key, const Value& value) {
    if (!add_entry(key, texts_.size(), value)) return false;
    texts_.append(key);
    return true;
  }
  /// The same for a key that stands in `texts` already.
  bool add_placed(std::size_t offset, std::size_t length, const Value& value) {
    return add_entry({texts_.data() + offset, length}, offset, value);
  }

 private:
  static constexpr std::size_t kFewest = 64;

  static std::uint64_t mixed(std::uint64_t h) {
    h *= 0x9E3779B97F4A7C15;
    return h ^ h >> 32;
  }
  static std::uint32_t hash_of(std::string_view key) {
    std::uint64_t h = key.size();
    for (; key.size() > sizeof h; key.remove_prefix(sizeof h)) h = mixed(h ^ loaded<std::uint64_t>(key.data()));
    // Once more, so that the first slots too depend on the last letters.
    return static_cast<std::uint32_t>(mixed(mixed(h ^ short_text(key))));
  }
  template <class Word>
  static std::uint64_t loaded(const char* from) {
    Word word;
    std::memcpy(&word, from, sizeof word);
    return word;
  }
  /// All bytes of a text of at most eight, together with its length no other's.
  static std::uint64_t short_text(std::string_view text) {
    const char* const p = text.data();
    const std::size_t n = text.size();
    if (n >= 4) return loaded<std::uint32_t>(p) | loaded<std::uint32_t>(p + n - 4) << 32;
    if (n == 0) return 0;
    return loaded<std::uint8_t>(p) | loaded<std::uint8_t>(p + n / 2) << 8 | loaded<std::uint8_t>(p + n - 1) << 16;
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
  bool add_entry(std::string_view key, std::size_t offset, const Value& value) {
    if (2 * entries_.size() >= slots_.size()) grow();
    const std::uint32_t hash = hash_of(key);
    std::uint32_t& slot = slots_[place(key, hash)];
    if (slot) return false;
    entries_.push_back({hash, static_cast<std::uint32_t>(key.size()), offset, value});
    slot = static_cast<std::uint32_t>(entries_.size());
    return true;
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
