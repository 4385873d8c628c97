#pragma once

/// A table of texts with a value each, in the order in which they were added, found by hashing. Texts stand behind one
/// another in one block, together with what the owner of the table puts there, so that filling a table again allocates
/// nothing.

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace qv::detail {

template <class Value>
class KeyTable {
 public:
  struct Entry {
    std::size_t offset;
    std::size_t length;
    Value value;
  };

  KeyTable() : slots_(kFewest) {}
  /// Forgets all entries and texts and keeps the memory. It needs none.
  void clear() {
    entries_.clear();
    texts_.clear();
    next_ = 0;
    slots_.assign(kFewest, Slot());
  }
  /// Makes room for so many entries.
  void reserve(std::size_t count) {
    entries_.reserve(count);
    if (2 * count > slots_.size()) resize(std::bit_ceil(2 * count));
  }
  std::size_t size() const { return entries_.size(); }
  std::string_view key(std::size_t i) const { return {texts_.data() + entries_[i].offset, entries_[i].length}; }
  Value& value(std::size_t i) { return entries_[i].value; }
  const Value& value(std::size_t i) const { return entries_[i].value; }
  /// The block of all texts. The owner may append to it, and change bytes that belong to no key.
  std::string& texts() { return texts_; }
  const std::string& texts() const { return texts_; }

  /// The value of a key, null when it is absent; valid until the next entry is added. A caller that asks for the
  /// entries in their order gets each without hashing: the one after the last found is tried first.
  const Value* find(std::string_view key) {
    if (next_ >= entries_.size() || !are_equal(this->key(next_), key)) {
      const std::uint32_t number = slots_[place(key, hash_of(key))].number;
      if (!number) return nullptr;
      next_ = number - 1;
    }
    return &entries_[next_++].value;
  }

  /// Adds an entry, whose key stands in `texts` with more text behind it then; false, with nothing changed, when the
  /// key is present. When memory runs out the entries are as they were.
  bool add(std::string_view key, const Value& value, std::string_view more = {}) {
    const std::size_t offset = texts_.size();
    texts_.append(key).append(more);
    if (add_placed(offset, key.size(), value)) return true;
    texts_.resize(offset);
    return false;
  }
  /// The same for a key that stands in `texts` already.
  bool add_placed(std::size_t offset, std::size_t length, const Value& value) {
    return add_entry({texts_.data() + offset, length}, offset, value);
  }

 private:
  static constexpr std::size_t kFewest = 32;

  /// Where a key may stand: its hash, and the number of its entry from 1, 0 in a free slot.
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t number = 0;
  };

  static constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
  static constexpr std::uint32_t kLast = 0xFF;

  /// The lowest byte of the hash is the last byte of the key; all others go into the bits above it.
  static std::uint32_t hash_of(std::string_view key) {
    if (key.empty()) return 0;
    const auto last = static_cast<unsigned char>(key.back());
    key.remove_suffix(1);
    std::uint64_t h = key.size();
    for (; key.size() > sizeof h; key.remove_prefix(sizeof h)) {
      h = (h ^ loaded<std::uint64_t>(key.data())) * kOdd;
      h ^= h >> 32;
    }
    return static_cast<std::uint32_t>((h ^ short_text(key)) * kOdd >> 32 & ~kLast) | last;
  }
  template <class Word>
  static std::uint64_t loaded(const char* from) {
    Word word;
    std::memcpy(&word, from, sizeof word);
    return word;
  }
  /// The bytes of a text of at most eight as a number: texts of one length that differ have different numbers.
  static std::uint64_t short_text(std::string_view text) {
    const char* const p = text.data();
    const std::size_t n = text.size();
    if (n >= 4) return loaded<std::uint32_t>(p) | loaded<std::uint32_t>(p + n - 4) << 32;
    if (n == 0) return 0;
    return loaded<std::uint8_t>(p) | loaded<std::uint8_t>(p + n / 2) << 8 | loaded<std::uint8_t>(p + n - 1) << 16;
  }
  static bool are_equal(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (; a.size() > sizeof(std::uint64_t); a.remove_prefix(sizeof(std::uint64_t))) {
      if (loaded<std::uint64_t>(a.data()) != loaded<std::uint64_t>(b.data())) return false;
      b.remove_prefix(sizeof(std::uint64_t));
    }
    return short_text(a) == short_text(b);
  }
  /// Where a key is looked for first. Names that differ in their last byte, as numbered ones do, lie side by side: they
  /// are written and read one after the other.
  static std::size_t home(std::uint32_t hash, std::size_t places) {
    return ((hash >> (33 - std::bit_width(places))) + (hash & kLast)) & (places - 1);
  }
  /// The slot that holds the key or, when it is absent, may take it.
  std::size_t place(std::string_view key, std::uint32_t hash) const {
    std::size_t at = home(hash, slots_.size());
    for (; slots_[at].number; at = (at + 1) & (slots_.size() - 1)) {
      if (slots_[at].hash == hash && are_equal(this->key(slots_[at].number - 1), key)) break;
    }
    return at;
  }
  bool add_entry(std::string_view key, std::size_t offset, const Value& value) {
    if (2 * entries_.size() >= slots_.size()) resize(4 * slots_.size());
    const std::uint32_t hash = hash_of(key);
    Slot& slot = slots_[place(key, hash)];
    if (slot.number) return false;
    entries_.push_back({offset, key.size(), value});
    slot = {hash, static_cast<std::uint32_t>(entries_.size())};
    return true;
  }
  void resize(std::size_t count) {
    std::vector<Slot> grown(count);
    for (const Slot& slot : slots_) {
      if (!slot.number) continue;
      std::size_t at = home(slot.hash, count);
      while (grown[at].number) at = (at + 1) & (count - 1);
      grown[at] = slot;
    }
    slots_.swap(grown);
  }

  std::vector<Entry> entries_;
  std::string texts_;
  std::vector<Slot> slots_;  // a power of two of them, half of them free
  std::size_t next_ = 0;     // behind the entry that was found last
};

}  // namespace qv::detail
