#include "qvtools/compare/internal/match.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <unordered_map>

namespace qv::detail {

namespace {

using Fate = Comparison::Fate;

/// Chains are no longer looked through than this: a drawing of a million circles about one point ends, too.
constexpr int kLongestSearch = 64;

struct Vector {
  double x = 0;
  double y = 0;
};

std::int64_t steps(double v, double perStep) {
  constexpr double kMost = 4e18;
  const double n = std::floor(v * perStep + 0.5);
  return n > -kMost && n < kMost ? static_cast<std::int64_t>(n) : std::numeric_limits<std::int64_t>::max();
}

class Hash {
 public:
  void add(std::uint64_t v) {
    h_ = (h_ ^ v) * 0x9E3779B97F4A7C15U;
    h_ ^= h_ >> 29;
  }
  void add_number(std::int64_t v) { add(static_cast<std::uint64_t>(v)); }
  std::uint64_t value() const { return h_; }

 private:
  std::uint64_t h_ = 0x51ED270B7F4A7C15U;
};

/// Pieces by a key of 64 bits, in chains; those of a key come out in the order in which they stand.
class Chains {
 public:
  static constexpr int kEnd = -1;

  /// `indices` in ascending order, `keys` beside them.
  Chains(const std::vector<int>& indices, const std::vector<std::uint64_t>& keys, std::size_t pieces)
      : next_(pieces, kEnd) {
    std::size_t size = 16;
    while (size < 2 * indices.size()) size *= 2;
    slots_.resize(size);
    for (std::size_t i = indices.size(); i-- > 0;) {
      Slot& slot = slot_of(keys[i]);
      slot.key = keys[i];
      next_[static_cast<std::size_t>(indices[i])] = slot.head;
      slot.head = indices[i];
    }
  }
  /// The first piece of the key that `fits` takes is taken out and returned; `kEnd` when there is none.
  int take(std::uint64_t key, const auto& fits) {
    int* link = &slot_of(key).head;
    for (int searched = 0; *link != kEnd && searched < kLongestSearch; ++searched) {
      const int piece = *link;
      if (fits(piece)) {
        *link = next_[static_cast<std::size_t>(piece)];
        return piece;
      }
      link = &next_[static_cast<std::size_t>(piece)];
    }
    return kEnd;
  }

 private:
  struct Slot {
    std::uint64_t key = 0;
    int head = kEnd;
  };
  /// An emptied slot keeps its key, so that what came to lie behind it is still found.
  Slot& slot_of(std::uint64_t key) {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t at = static_cast<std::size_t>(key ^ key >> 32) & mask;; at = (at + 1) & mask)
      if (Slot& slot = slots_[at]; slot.key == key || (slot.key == 0 && slot.head == kEnd)) return slot;
  }
  std::vector<Slot> slots_;
  std::vector<int> next_;
};

class Matcher {
 public:
  Matcher(const Pieces& before, const Pieces& after, const CompareOptions& options)
      : old_(before), new_(after), findShift_(options.findShift) {
    constexpr double kFloatSteps = 4.0 / (1 << 24);
    constexpr double kLeast = 1e-6;
    const double given = options.tolerance > kLeast ? options.tolerance : kLeast;
    tolerance_ = std::max(given, std::max(old_.reach(), new_.reach()) * kFloatSteps);
    sizeTolerance_ = given;
  }

  Matches run() {
    match_in_place();
    const std::size_t least = std::min(old_.all.size(), new_.all.size());
    if (findShift_ && 2 * matched_ < least) try_shift();
    match_broken(old_, new_, found_, tolerance_);
    match_changed();
    match_moved();
    match_words();
    return std::move(found_);
  }

 private:
  // ---- what is left over

  void begin(Vector shift) {
    shift_ = shift;
    found_.mate.assign(new_.all.size(), Matches::kNone);
    found_.before.assign(old_.all.size(), Fate::Alone);
    found_.after.assign(new_.all.size(), Fate::Alone);
    found_.shift = CFPoint(static_cast<float>(shift.x), static_cast<float>(shift.y));
    matched_ = 0;
  }
  void join(int before, int after, Fate fate) {
    found_.before[static_cast<std::size_t>(before)] = fate;
    found_.after[static_cast<std::size_t>(after)] = fate;
    found_.mate[static_cast<std::size_t>(after)] = before;
    ++matched_;
  }
  static std::vector<int> alone(const std::vector<Fate>& fates) {
    std::vector<int> rest;
    for (std::size_t i = 0; i < fates.size(); ++i)
      if (fates[i] == Fate::Alone) rest.push_back(static_cast<int>(i));
    return rest;
  }
  const Piece& before(int i) const { return old_.all[static_cast<std::size_t>(i)]; }
  const Piece& after(int i) const { return new_.all[static_cast<std::size_t>(i)]; }

  /// Joins the rests whose keys are the same and which `fits` takes. A piece may be sought under several keys.
  void join_rests(const auto& old_key, const auto& new_keys, const auto& fits, Fate fate) {
    const std::vector<int> left = alone(found_.before);
    if (left.empty()) return;
    std::vector<std::uint64_t> keys;
    keys.reserve(left.size());
    for (const int i : left) keys.push_back(old_key(i));
    Chains chains(left, keys, old_.all.size());
    for (const int n : alone(found_.after)) {
      new_keys(n, [&](std::uint64_t key) {
        const int taken = chains.take(key, [&](int o) { return fits(o, n); });
        if (taken != Chains::kEnd) join(taken, n, fate);
        return taken != Chains::kEnd;
      });
    }
  }

  // ---- the same at the same place

  std::uint64_t content_key(const Pieces& of, const Piece& piece, Vector shift) const {
    Hash hash;
    hash.add(std::uint64_t{piece.look} << 32 | piece.words);
    hash.add(static_cast<std::uint64_t>(piece.kind));
    const Point3* const p = of.points_of(piece);
    for (int i = 0; i < piece.count; ++i) {
      hash.add_number(steps(p[i].x + shift.x, 1 / tolerance_));
      hash.add_number(steps(p[i].y + shift.y, 1 / tolerance_));
      hash.add_number(steps(p[i].z, 1 / tolerance_));
    }
    return hash.value();
  }

  bool sizes_fit(const Piece& a, const Piece& b) const {
    for (int i = 0; i < 3; ++i)
      if (!(std::fabs(double{a.size[i]} - b.size[i]) <= sizeTolerance_)) return false;
    return true;
  }
  /// Half as much again as the tolerance: what is nearer than that may be rounded apart.
  bool is_near(const Point3& a, const Point3& b, Vector shift) const {
    const double most = 1.5 * tolerance_;
    return std::fabs(a.x + shift.x - b.x) <= most && std::fabs(a.y + shift.y - b.y) <= most &&
           std::fabs(double{a.z} - b.z) <= most;
  }
  /// Whether the points of two pieces lie at the same places: as they run, backwards, or round a face.
  bool points_fit(const Piece& a, const Piece& b, Vector shift) const {
    const Point3* const p = old_.points_of(a);
    const Point3* const q = new_.points_of(b);
    const int n = a.count;
    const auto fit = [&](int start, int step) {
      for (int i = 0; i < n; ++i)
        if (!is_near(p[i], q[(start + i * step + n) % n], shift)) return false;
      return true;
    };
    if (fit(0, 1)) return true;
    if (n == 2 || n == 3) return fit(n - 1, n - 1);
    for (int start = 0; n == 4 && start < n; ++start)
      if (fit(start, 1) || fit(start, n - 1)) return true;
    return false;
  }

  static Vector middle(const Pieces& of, const Piece& piece) {
    Vector sum;
    const Point3* const p = of.points_of(piece);
    for (int i = 0; i < piece.count; ++i) sum.x += p[i].x, sum.y += p[i].y;
    return {sum.x / piece.count, sum.y / piece.count};
  }

  void match_in_place() { match_in_place({}); }
  void match_in_place(Vector shift) {
    begin(shift);
    join_rests([&](int o) { return content_key(old_, before(o), shift_); },
               [&](int n, const auto& seek) { seek(content_key(new_, after(n), {})); },
               [&](int o, int n) { return is_same(before(o), after(n)); }, Fate::Same);
    join_near([](const Piece& p) { return std::uint64_t{p.look} << 32 | p.words; },
              [&](int o, int n) { return is_same(before(o), after(n)); }, Fate::Same);
  }
  bool is_same(const Piece& a, const Piece& b) const {
    return a.kind == b.kind && a.look == b.look && a.words == b.words && sizes_fit(a, b) && points_fit(a, b, shift_);
  }

  /// Joins the rests of the same kind and `trait` whose middles lie near to each other.
  void join_near(const auto& trait, const auto& fits, Fate fate) {
    const double perCell = 1 / (4 * tolerance_);
    const auto key_of = [&](const Piece& piece, std::int64_t x, std::int64_t y) {
      Hash hash;
      hash.add(static_cast<std::uint64_t>(piece.kind));
      hash.add(trait(piece));
      hash.add_number(x);
      hash.add_number(y);
      return hash.value();
    };
    join_rests(
        [&](int o) {
          const Vector m = middle(old_, before(o));
          return key_of(before(o), steps(m.x + shift_.x, perCell), steps(m.y + shift_.y, perCell));
        },
        [&](int n, const auto& seek) {
          const Vector m = middle(new_, after(n));
          const double half = 0.5 / perCell;
          for (const double dx : {-half, half})
            for (const double dy : {-half, half})
              if (seek(key_of(after(n), steps(m.x + dx, perCell), steps(m.y + dy, perCell)))) return;
        },
        fits, fate);
  }

  // ---- the shift of the sheet

  static constexpr double kFormStep = 8;  // tolerances

  /// Says roughly what a piece is like, wherever it lies. What is rounded apart with one offset is not with another.
  std::uint64_t form_key(const Pieces& of, const Piece& piece, double offset) const {
    const double perStep = 1 / (kFormStep * tolerance_);
    Hash hash;
    hash.add(std::uint64_t{piece.look} << 32 | piece.words);
    hash.add(static_cast<std::uint64_t>(piece.kind));
    const Point3* const p = of.points_of(piece);
    for (int i = 1; i < piece.count; ++i) {
      hash.add_number(steps(double{p[i].x} - p[0].x + offset, perStep));
      hash.add_number(steps(double{p[i].y} - p[0].y + offset, perStep));
      hash.add_number(steps(double{p[i].z} - p[0].z + offset, perStep));
    }
    for (const float size : piece.size) hash.add_number(steps(size + offset, 1 / (kFormStep * sizeTolerance_)));
    return hash.value();
  }

  /// The rest of one drawing, those of one form together, from left to right and from below.
  struct Formed {
    std::uint64_t form;
    int piece;
    Vector at;
  };
  std::vector<Formed> formed(const Pieces& of, const std::vector<Fate>& fates, double offset) const {
    std::vector<Formed> all;
    for (const int i : alone(fates)) {
      const Piece& piece = of.all[static_cast<std::size_t>(i)];
      all.push_back({form_key(of, piece, offset), i, middle(of, piece)});
    }
    std::sort(all.begin(), all.end(), [](const Formed& a, const Formed& b) {
      if (a.form != b.form) return a.form < b.form;
      return a.at.x != b.at.x ? a.at.x < b.at.x : a.at.y != b.at.y ? a.at.y < b.at.y : a.piece < b.piece;
    });
    return all;
  }

  /// Calls f(old from, old until, new from, new until) for each form that both rests have.
  static void for_each_form(const std::vector<Formed>& a, const std::vector<Formed>& b, const auto& f) {
    const auto end_of = [](const std::vector<Formed>& v, std::size_t i) {
      std::size_t end = i;
      while (end < v.size() && v[end].form == v[i].form) ++end;
      return end;
    };
    for (std::size_t i = 0, k = 0; i < a.size() && k < b.size();) {
      if (a[i].form < b[k].form) {
        ++i;
      } else if (b[k].form < a[i].form) {
        ++k;
      } else {
        const std::size_t endA = end_of(a, i);
        const std::size_t endB = end_of(b, k);
        f(i, endA, k, endB);
        i = endA;
        k = endB;
      }
    }
  }

  /// Counts how often a way is taken, in steps of some tolerances.
  class Ways {
   public:
    explicit Ways(double tolerance) : perStep_(1 / (4 * tolerance)) {}
    std::uint64_t key(Vector way) const {
      Hash hash;
      hash.add_number(steps(way.x, perStep_));
      hash.add_number(steps(way.y, perStep_));
      return hash.value();
    }
    void add(Vector way) {
      Way& entry = ways_[key(way)];
      ++entry.votes;
      entry.sum.x += way.x;
      entry.sum.y += way.y;
      if (entry.votes > best_.votes) best_ = entry;
    }
    int votes(Vector way) const {
      const auto found = ways_.find(key(way));
      return found == ways_.end() ? 0 : found->second.votes;
    }
    std::optional<Vector> best() const {
      if (best_.votes == 0) return std::nullopt;
      return Vector{best_.sum.x / best_.votes, best_.sum.y / best_.votes};
    }

   private:
    struct Way {
      int votes = 0;
      Vector sum;
    };
    double perStep_;
    std::unordered_map<std::uint64_t, Way> ways_;
    Way best_;
  };

  /// The way that most of what both drawings have has gone: those of one form keep their order from left to right when
  /// the sheet is shifted.
  std::optional<Vector> likely_shift() const {
    constexpr std::size_t kMostOfForm = 1000;
    const std::vector<Formed> a = formed(old_, found_.before, 0);
    const std::vector<Formed> b = formed(new_, found_.after, 0);
    Ways ways(tolerance_);
    for_each_form(a, b, [&](std::size_t i, std::size_t endI, std::size_t k, std::size_t endK) {
      const std::size_t n = std::min({endI - i, endK - k, kMostOfForm});
      const auto vote = [&](std::size_t o, std::size_t m) { ways.add({b[m].at.x - a[o].at.x, b[m].at.y - a[o].at.y}); };
      for (std::size_t j = 0; j < n; ++j) vote(i + j, k + j);
      if (endI - i != endK - k)
        for (std::size_t j = 1; j <= n; ++j) vote(endI - j, endK - j);
    });
    return ways.best();
  }

  void try_shift() {
    const std::optional<Vector> shift = likely_shift();
    if (!shift) return;
    const std::size_t unshifted = matched_;
    Matches kept = std::move(found_);
    match_in_place(*shift);
    if (matched_ > unshifted) return;
    found_ = std::move(kept);
    shift_ = {};
    matched_ = unshifted;
  }

  bool has_form(const Piece& a, const Piece& b, Vector from, Vector to) const {
    return a.kind == b.kind && a.look == b.look && a.words == b.words && sizes_fit(a, b) &&
           points_fit(a, b, {to.x - from.x, to.y - from.y});
  }

  // ---- what changed

  /// The same points with another look or another size; a text keeps its words.
  void match_changed() {
    join_near([](const Piece& p) { return std::uint64_t{p.words}; },
              [&](int o, int n) {
                return before(o).kind == after(n).kind && before(o).words == after(n).words &&
                       points_fit(before(o), after(n), shift_);
              },
              Fate::Changed);
  }

  void match_moved() {
    match_moved(0);
    match_moved(kFormStep / 2 * tolerance_);
  }
  /// Pairs of one form, those that many go the way of first, then the shortest ways.
  void match_moved(double offset) {
    struct Pair {
      int votes;
      double way;
      int before;
      int after;
    };
    constexpr std::size_t kMostOfForm = 8;  // tries for each piece
    const std::vector<Formed> a = formed(old_, found_.before, offset);
    const std::vector<Formed> b = formed(new_, found_.after, offset);
    const auto way_of = [&](const Formed& from, const Formed& to) {
      return Vector{to.at.x - from.at.x - shift_.x, to.at.y - from.at.y - shift_.y};
    };
    const auto for_each_pair = [&](const auto& f) {
      for_each_form(a, b, [&](std::size_t i, std::size_t endI, std::size_t k, std::size_t endK) {
        const std::size_t olds = endI - i;
        const std::size_t news = endK - k;
        for (std::size_t o = 0; o < olds; ++o) {
          // Those about the same rank, when there are too many to try all.
          const std::size_t rank = olds > 1 ? o * (news - 1) / (olds - 1) : 0;
          const std::size_t first =
              std::min(rank - std::min(rank, kMostOfForm / 2), news - std::min(news, kMostOfForm));
          for (std::size_t n = first; n < std::min(first + kMostOfForm, news); ++n)
            if (has_form(before(a[i + o].piece), after(b[k + n].piece), a[i + o].at, b[k + n].at))
              f(a[i + o], b[k + n]);
        }
      });
    };
    Ways ways(tolerance_);
    for_each_pair([&](const Formed& o, const Formed& n) { ways.add(way_of(o, n)); });
    std::vector<Pair> pairs;
    for_each_pair([&](const Formed& o, const Formed& n) {
      const Vector way = way_of(o, n);
      if (const double length = std::hypot(way.x, way.y); std::isfinite(length))
        pairs.push_back({ways.votes(way), length, o.piece, n.piece});
    });
    std::sort(pairs.begin(), pairs.end(), [](const Pair& p, const Pair& q) {
      if (p.votes != q.votes) return p.votes > q.votes;
      if (p.way != q.way) return p.way < q.way;
      return p.before != q.before ? p.before < q.before : p.after < q.after;
    });
    for (const Pair& pair : pairs) {
      const bool free = found_.before[static_cast<std::size_t>(pair.before)] == Fate::Alone &&
                        found_.after[static_cast<std::size_t>(pair.after)] == Fate::Alone;
      if (free) join(pair.before, pair.after, Fate::Moved);
    }
  }

  /// Texts of one height and direction whose insertion points lie within a height of each other.
  void match_words() {
    const auto key_of = [&](const Piece& p, std::int64_t x, std::int64_t y) {
      Hash hash;
      hash.add(static_cast<std::uint64_t>(p.kind));
      hash.add_number(steps(p.size[0], 1 / sizeTolerance_));
      hash.add_number(x);
      hash.add_number(y);
      return hash.value();
    };
    const auto cell = [](const Piece& p) { return 2 * std::max(double{std::fabs(p.size[0])}, 1e-3); };
    join_rests(
        [&](int o) {
          const Piece& p = before(o);
          const Vector at = middle(old_, p);
          return key_of(p, steps(at.x + shift_.x, 1 / cell(p)), steps(at.y + shift_.y, 1 / cell(p)));
        },
        [&](int n, const auto& seek) {
          const Piece& p = after(n);
          if (p.kind != PieceKind::Text) return;
          const Vector at = middle(new_, p);
          const double c = cell(p);
          for (const double dx : {-c / 2, c / 2})
            for (const double dy : {-c / 2, c / 2})
              if (seek(key_of(p, steps((at.x + dx), 1 / c), steps((at.y + dy), 1 / c)))) return;
        },
        [&](int o, int n) {
          const Piece& p = before(o);
          const Piece& q = after(n);
          if (p.kind != PieceKind::Text || !sizes_fit(p, q)) return false;
          const Vector from = middle(old_, p);
          const Vector to = middle(new_, q);
          const double height = std::max(double{std::fabs(p.size[0])}, tolerance_);
          return std::hypot(to.x - from.x - shift_.x, to.y - from.y - shift_.y) <= height;
        },
        Fate::Changed);
  }

  const Pieces& old_;
  const Pieces& new_;
  bool findShift_;
  double tolerance_ = 0;
  double sizeTolerance_ = 0;
  Vector shift_;
  Matches found_;
  std::size_t matched_ = 0;
};

}  // namespace

Matches match(const Pieces& before, const Pieces& after, const CompareOptions& options) {
  return Matcher(before, after, options).run();
}

}  // namespace qv::detail
