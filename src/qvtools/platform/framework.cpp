#include "qvtools/platform/framework.h"

#include <bit>

#include "qvtools/text/gbk_text.h"

static_assert(std::endian::native == std::endian::little, "archives and binary formats are little-endian");

CObject::~CObject() = default;

void CString::MakeUpper() {
  qv::upper_case(text_.data());
}

bool CArchive::Read(void* data, std::size_t n) {
  if (n > Remaining()) {
    std::memset(data, 0, n);
    failed_ = true;
    return false;
  }
  std::memcpy(data, bytes_.data() + position_, n);
  position_ += n;
  return true;
}

CPtrList::~CPtrList() {
  RemoveAll();
}

CPtrList::Block* CPtrList::new_block() const {
  void* const memory = ::operator new (blockBytes_, std::align_val_t{blockBytes_}, std::nothrow);
  return memory ? new (memory) Block{} : nullptr;
}

void CPtrList::delete_first() {
  ::operator delete (std::exchange(first_, first_->next), std::align_val_t{blockBytes_});
  if (!first_) last_ = nullptr;
}

POSITION CPtrList::AddTail(void* data) {
  if (!last_ || last_->end == end_slot(last_)) {
    Block* const block = new_block();
    if (!block) return nullptr;
    block->begin = block->end = first_slot(block);
    (last_ ? last_->next : first_) = block;
    last_ = block;
  }
  ++count_;
  last_->end->data = data;
  return last_->end++;
}

POSITION CPtrList::AddHead(void* data) {
  if (!first_ || first_->begin == first_slot(first_)) {
    Block* const block = new_block();
    if (!block) return nullptr;
    block->begin = block->end = end_slot(block);
    block->next = first_;
    first_ = block;
    if (!last_) last_ = block;
  }
  ++count_;
  (--first_->begin)->data = data;
  return first_->begin;
}

void* CPtrList::RemoveHead() {
  void* const data = first_->begin->data;
  --count_;
  if (++first_->begin == first_->end) delete_first();
  return data;
}

void CPtrList::RemoveAll() {
  while (first_) delete_first();
  count_ = 0;
}

void CPtrList::TakeAll(CPtrList& other) {
  if (!other.first_) return;
  (last_ ? last_->next : first_) = other.first_;
  last_ = other.last_;
  count_ += other.count_;
  other.first_ = other.last_ = nullptr;
  other.count_ = 0;
}
