// References of blocks.

#include "qvtools/import/internal/converters.h"
#include "qvtools/import/internal/float_steps.h"
#include "qvtools/text/gbk_text.h"

namespace qv::importing {

namespace {

constexpr std::size_t kDeepest = 64;
constexpr double kMostReferences = 20;           // of the largest size, that are taken apart in one drawing
constexpr std::size_t kMostPlacedBlocks = 4000;  // drawings look for blocks one by one
constexpr int kExternal = 4;                     // flag of group 70 of a block

/// A reference taken apart.
struct Reference {
  int block = -1;
  Matrix frame;   // own axes, turned, with the insertion point as its origin
  Matrix scaled;  // the same with its scales
  int columns = 1;
  int rows = 1;
  double acrossStep = 0;
  double upStep = 0;

  Vec step(int column, int row) const { return frame.direction({column * acrossStep, row * upStep, 0}); }
  double count() const { return static_cast<double>(columns) * rows; }
};

Reference reference_of(Job& job, const Record& record) {
  Reference r;
  r.block = job.file.blockNames.find(record.word(2), job.file.decoder);
  const auto scale = [&](int code) {
    const double k = record.real(code, 1);
    return k == 0 || !std::isfinite(k) ? 1 : k;
  };
  r.frame = frame_of(job, record) * translation(record.point(10)) * turning(radians(record.real(50)));
  r.scaled = r.frame * scaling(scale(41), scale(42), scale(43));
  r.columns = std::max(1, record.integer(70, 1));
  r.rows = std::max(1, record.integer(71, 1));
  r.acrossStep = record.real(44);
  r.upStep = record.real(45);
  if (r.acrossStep == 0) r.columns = 1;
  if (r.upStep == 0) r.rows = 1;
  return r;
}

std::vector<Record> read_attributes(Job& job) {
  std::vector<Record> attributes;
  TagReader& in = job.file.in;
  while (in.next()) {
    if (in.tag().code != 0) continue;
    const std::string_view name = word_of(in.tag());
    if (name == "SEQEND") break;
    in.unread();
    if (name != "ATTRIB") break;
    read_record(in, attributes.emplace_back());
  }
  return attributes;
}

void put_attributes(Job& job, const std::vector<Record>& attributes, const Reference& r) {
  const Matrix place = job.place;
  for (int row = 0; row < r.rows; ++row)
    for (int column = 0; column < r.columns; ++column) {
      job.place = translation(r.step(column, row)) * place;
      for (const Record& attribute : attributes) {
        const Common common = common_of(attribute);
        job.dress(common);
        job.convert(attribute);
      }
    }
  job.place = place;
}

/// The same block for references that are scaled and turned alike and hand on the same look.
std::string key_of(const Job& job, const Reference& r, const Matrix& linear) {
  std::string key(reinterpret_cast<const char*>(&r.block), sizeof r.block);
  for (const Vec& axis : {linear.x, linear.y, linear.z})
    for (const double v : {axis.x, axis.y, axis.z}) {
      const float rounded = std::fabs(v) < 1e-12 ? 0.0F : static_cast<float>(v);
      key.append(reinterpret_cast<const char*>(&rounded), sizeof rounded);
    }
  if (!job.file.blocks[static_cast<std::size_t>(r.block)].inherits) return key;
  const Look& look = job.out.look;
  for (const int v : {look.layer, look.color, look.lineType, look.lineWeight, look.trueColor})
    key.append(reinterpret_cast<const char*>(&v), sizeof v);
  return key;
}

/// Fills a block of the document with the entities of one of the file, less the shift.
void fill_block(Job& job, ACAD_BLOCK& block, int from, const Matrix& at, const Vec& shift, Bounds& bounds) {
  CPtrList& list = job.out.list();
  const Vec before = job.out.shift();
  const Bounds outside = job.out.bounds;
  job.out.begin(block.m_EntityList, shift);
  job.out.bounds = {};
  job.expand(from, at);
  bounds = job.out.bounds;
  job.out.bounds = outside;
  job.out.begin(list, before);
}

PlacedBlock place_block(Job& job, const Reference& r, const Matrix& linear) {
  const FileBlock& from = job.file.blocks[static_cast<std::size_t>(r.block)];
  PlacedBlock placed;
  if (job.file.expanded_count(r.block) > job.options.mostOfReference) {
    placed.refused = true;
    return placed;
  }
  auto block = std::make_unique<ACAD_BLOCK>(job.blockRecords);
  const bool asItStands = linear == Matrix();
  const Matrix at = asItStands ? Matrix() : linear * translation(from.base * -1);
  if (asItStands) placed.base = from.base;
  Bounds bounds;
  const std::size_t noted = job.out.notes->entities.size();
  fill_block(job, *block, r.block, at, {}, bounds);
  if (const Vec shift = shift_of(bounds, job.unit); shift != Vec{}) {
    block = std::make_unique<ACAD_BLOCK>(job.blockRecords);
    job.out.notes->entities.erase(job.out.notes->entities.begin() + static_cast<long>(noted),
                                  job.out.notes->entities.end());
    job.report.quiet = true;
    fill_block(job, *block, r.block, at, shift, bounds);
    job.report.quiet = false;
    placed.shift = shift;
  }
  placed.empty = block->m_EntityList.GetCount() == 0;
  placed.bounds = bounds;
  if (placed.empty) return placed;
  std::string wanted = from.name;
  while (!wanted.empty() && wanted[0] == '*') wanted.erase(0, 1);
  placed.name = job.tables.block_name(wanted);
  copy_text(block->m_szName, placed.name.c_str());
  block->m_Base = {static_cast<float>(placed.base.x), static_cast<float>(placed.base.y),
                   static_cast<float>(placed.base.z)};
  if (!job.madeBlocks.AddTail(block.get())) throw std::bad_alloc();
  block.release();
  return placed;
}

Outcome put_references(Job& job, const Reference& r) {
  Matrix linear = r.scaled;
  linear.origin = {};
  const Look look = job.out.look;
  const std::string key = key_of(job, r, linear);
  auto found = job.placedBlocks.find(key);
  if (found == job.placedBlocks.end()) {
    found = job.placedBlocks.emplace(key, PlacedBlock()).first;
    const PlacedBlock placed = place_block(job, r, linear);
    found = job.placedBlocks.insert_or_assign(key, placed).first;
    job.out.look = look;
  }
  const PlacedBlock& placed = found->second;
  if (placed.refused) return left_out("a block of too many entities");
  const bool plain = linear == Matrix();
  if (placed.empty) return plain ? kTaken : converted("INSERT");
  // What is on a layer that is off is not seen, but what its reference shows on other layers is.
  const int layer = job.out.look.layer;
  if (job.tables.layer_record(layer).m_nColor < 0 && (job.tables.layer_record(layer).m_nFlags & 1) == 0)
    job.out.look.layer = job.tables.layer("0");
  bool good = true;
  for (int row = 0; row < r.rows; ++row)
    for (int column = 0; column < r.columns; ++column) {
      const Vec at = r.frame.origin + r.step(column, row);
      good = job.out.insert(placed.name.c_str(), at + placed.shift) && good;
      const Vec by = at - placed.base;
      job.out.bounds.add(placed.bounds.x1 + by.x, placed.bounds.y1 + by.y);
      job.out.bounds.add(placed.bounds.x2 + by.x, placed.bounds.y2 + by.y);
    }
  job.out.look = look;
  return outcome(good,
                 plain && r.count() == 1 ? kTaken : converted("INSERT of a block that is scaled and turned as it is"));
}

Outcome expand_references(Job& job, const Reference& r) {
  const double each = job.file.expanded_count(r.block);
  job.madeOfReferences += each * r.count();
  if (job.madeOfReferences > kMostReferences * job.options.mostOfReference)
    return left_out("too many entities of references in all");
  const FileBlock& from = job.file.blocks[static_cast<std::size_t>(r.block)];
  const Vec base = from.base;
  const Look look = job.out.look;
  for (int row = 0; row < r.rows; ++row)
    for (int column = 0; column < r.columns; ++column) {
      job.out.look = look;
      job.expand(r.block, translation(r.step(column, row)) * r.scaled * translation(base * -1));
    }
  job.out.look = look;
  return converted("the entities of its block");
}

Outcome put_reference(Job& job, const Reference& r) {
  if (r.block < 0) return left_out("its block is not in the file");
  const FileBlock& block = job.file.blocks[static_cast<std::size_t>(r.block)];
  if (block.entities == 0) return (block.flags & kExternal) != 0 ? left_out("a drawing in another file") : kTaken;
  if (std::ranges::find(job.openBlocks, r.block) != job.openBlocks.end()) return left_out("a block within itself");
  if (job.openBlocks.size() >= kDeepest) return left_out("blocks nested too deep");
  if (!is_finite(r.scaled.origin) || !is_finite(r.scaled.x) || !is_finite(r.scaled.y) || !is_finite(r.scaled.z) ||
      !std::isfinite(r.acrossStep) || !std::isfinite(r.upStep))
    return outcome(false, kTaken);
  const bool whole =
      !job.options.explode && !job.inBlock && !job.out.window && job.placedBlocks.size() < kMostPlacedBlocks;
  const double made = whole ? r.count() : r.count() * job.file.expanded_count(r.block);
  if (made > job.options.mostOfReference) return left_out("more records than one reference may make");
  return whole ? put_references(job, r) : expand_references(job, r);
}

}  // namespace

void Job::expand(int block, const Matrix& at) {
  FileBlock& from = file.blocks[static_cast<std::size_t>(block)];
  const std::size_t readerAt = file.in.next_place();
  const Matrix placeBefore = place;
  const Look lookBefore = out.look;
  const Look inheritedBefore = inherited;
  const bool inBlockBefore = inBlock;
  const bool quietBefore = report.quiet;
  const std::size_t reportedPlace = report.place;
  place = at;
  inherited = out.look;
  inBlock = true;
  report.quiet = quietBefore || from.counted;
  from.counted = true;
  openBlocks.push_back(block);
  const Span span{from.from, from.to};
  const Space spaceBefore = space_;
  convert_all(span, Space::All);
  space_ = spaceBefore;
  openBlocks.pop_back();
  place = placeBefore;
  inherited = inheritedBefore;
  inBlock = inBlockBefore;
  report.quiet = quietBefore;
  report.place = reportedPlace;
  out.look = lookBefore;
  file.in.seek(readerAt);
}

Outcome put_block_entities(Job& job, int block, const Matrix& at) {
  if (block < 0 || job.file.blocks[static_cast<std::size_t>(block)].entities == 0)
    return left_out("its block is not in the file");
  const FileBlock& from = job.file.blocks[static_cast<std::size_t>(block)];
  if (std::ranges::find(job.openBlocks, block) != job.openBlocks.end()) return left_out("a block within itself");
  if (job.openBlocks.size() >= kDeepest) return left_out("blocks nested too deep");
  const double count = job.file.expanded_count(block);
  job.madeOfReferences += count;
  if (count > job.options.mostOfReference || job.madeOfReferences > kMostReferences * job.options.mostOfReference)
    return left_out("a block of too many entities");
  job.expand(block, at * translation(from.base * -1));
  return converted("the entities of its block");
}

Outcome convert_insert(Job& job, const Record& record) {
  const Reference r = reference_of(job, record);
  const std::vector<Record> attributes = record.integer(66) != 0 ? read_attributes(job) : std::vector<Record>();
  const Look look = job.out.look;
  const Outcome result = put_reference(job, r);
  job.out.look = look;
  if (result.kind != Outcome::LeftOut) put_attributes(job, attributes, r);
  return result;
}

}  // namespace qv::importing
