#include "qvtools/compare/compare.h"

#include <algorithm>
#include <cmath>

#include "qvtools/compare/internal/match.h"
#include "qvtools/services/internal/out_of_memory.h"

namespace qv {

namespace {

using detail::Matches;
using detail::Piece;
using detail::Pieces;
using Fate = Comparison::Fate;

/// Gathers pieces of one entity that share a fate, as they follow each other.
class Gatherer {
 public:
  Gatherer(const Pieces& before, const Pieces& after, const Matches& matches)
      : old_(before), new_(after), matches_(matches) {}

  std::vector<Difference> gather() {
    for (std::size_t i = 0; i < old_.all.size(); ++i) {
      if (matches_.before[i] != Fate::Alone) continue;
      Difference d;
      d.kind = ChangeKind::Removed;
      d.before = old_.all[i].entity;
      d.box = old_.box_of(old_.all[i]);
      d.box += matches_.shift;
      add(d);
    }
    for (std::size_t i = 0; i < new_.all.size(); ++i)
      if (matches_.after[i] != Fate::Same) add(new_difference(i));
    return std::move(all_);
  }

 private:
  Difference new_difference(std::size_t i) const {
    const Piece& piece = new_.all[i];
    Difference d;
    d.kind = ChangeKind::Added;
    d.after = piece.entity;
    d.box = new_.box_of(piece);
    if (matches_.after[i] == Fate::Alone) return d;
    const Piece& was = old_.all[static_cast<std::size_t>(matches_.mate[i])];
    d.before = was.entity;
    d.kind = matches_.after[i] == Fate::Moved ? ChangeKind::Moved : ChangeKind::Changed;
    d.words = was.words != piece.words;
    if (d.kind == ChangeKind::Moved) {
      const Point3& from = *old_.points_of(was);
      const Point3& to = *new_.points_of(piece);
      d.moved = CFPoint(to.x - from.x - matches_.shift.x, to.y - from.y - matches_.shift.y);
    }
    return d;
  }

  void add(const Difference& d) {
    Difference* const last = all_.empty() ? nullptr : &all_.back();
    const auto is_near = [](float a, float b) { return std::fabs(a - b) <= 1e-3F * std::max(1.0F, std::fabs(a)); };
    const bool joins = last && last->kind == d.kind && last->before == d.before && last->after == d.after &&
                       is_near(last->moved.x, d.moved.x) && is_near(last->moved.y, d.moved.y);
    if (!joins) return all_.push_back(d);
    ++last->pieces;
    last->words = last->words || d.words;
    last->box = CFRect(std::min(last->box.x1, d.box.x1), std::min(last->box.y1, d.box.y1),
                       std::max(last->box.x2, d.box.x2), std::max(last->box.y2, d.box.y2));
  }

  const Pieces& old_;
  const Pieces& new_;
  const Matches& matches_;
  std::vector<Difference> all_;
};

double near_for(DXF& before, DXF& after) {
  constexpr double kShare = 1.0 / 50;
  const auto diagonal = [](const CFRect& r) {
    const double d = std::hypot(double{r.x2} - r.x1, double{r.y2} - r.y1);
    return std::isfinite(d) ? d : 0;
  };
  return kShare * std::max(diagonal(before.GetFRect()), diagonal(after.GetFRect()));
}

Comparison compare(DXF& before, DXF& after, const CompareOptions& options) {
  detail::PieceNames names;
  const Pieces olds(before, names);
  const Pieces news(after, names);
  Matches matches = detail::match(olds, news, options);
  Comparison result;
  result.shift = matches.shift;
  result.differences = Gatherer(olds, news, matches).gather();
  if (!result.differences.empty())
    result.places =
        detail::find_places(result.differences, options.gather > 0 ? options.gather : near_for(before, after));
  result.same = static_cast<int>(std::count(matches.after.begin(), matches.after.end(), Fate::Same));
  result.before = std::move(matches.before);
  result.after = std::move(matches.after);
  return result;
}

Comparison nothing_compared() {
  Comparison failed;
  failed.same = -1;
  return failed;
}

}  // namespace

int Comparison::Count(ChangeKind kind) const {
  return static_cast<int>(
      std::count_if(differences.begin(), differences.end(), [&](const Difference& d) { return d.kind == kind; }));
}

Comparison Compare(DXF& before, DXF& after, const CompareOptions& options) {
  return detail::unless_out_of_memory([&] { return compare(before, after, options); }, nothing_compared());
}

}  // namespace qv
