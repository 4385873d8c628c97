#include "qvtools/platform/framework.h"

#include <bit>

#include "qvtools/text/gbk_text.h"

static_assert(std::endian::native == std::endian::little, "archives and binary formats are little-endian");

CObject::~CObject() = default;

void CObject::Serialize(CArchive&) {}

void CString::MakeUpper() {
  qv::upper_case(text_.data());
}

CArchive::CArchive(std::string_view bytes) : bytes_(bytes), storing_(false) {}

void CArchive::Write(const void* data, std::size_t n) {
  bytes_.append(static_cast<const char*>(data), n);
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

CArchive& CArchive::operator<<(float v) {
  return Write(&v, sizeof v), *this;
}
CArchive& CArchive::operator<<(std::uint32_t v) {
  return Write(&v, sizeof v), *this;
}
CArchive& CArchive::operator>>(float& v) {
  return Read(&v, sizeof v), *this;
}
CArchive& CArchive::operator>>(std::uint32_t& v) {
  return Read(&v, sizeof v), *this;
}
CArchive& CArchive::operator>>(std::int32_t& v) {
  return Read(&v, sizeof v), *this;
}

struct CPtrList::Block {
  Block* next;
  POSITION slots() { return reinterpret_cast<POSITION>(this + 1); }
};

CPtrList::~CPtrList() {
  RemoveAll();
}

CPtrList::Block* CPtrList::new_block() const {
  const std::size_t slots = static_cast<std::size_t>(blockSize_) + 2;
  auto* const block =
      static_cast<Block*>(::operator new(sizeof(Block) + slots * sizeof(qv::detail::ListSlot), std::nothrow));
  if (block) block->next = nullptr;
  return block;
}

POSITION CPtrList::AddTail(void* data) {
  POSITION slot = tail_ ? tail_ + 1 : nullptr;
  if (!slot || slot == last_->slots() + blockSize_) {
    Block* const block = new_block();
    if (!block) return nullptr;
    if (slot) set_end(slot, block->slots());
    (slot ? last_->next : first_) = block;
    last_ = block;
    slot = block->slots();
    if (!head_) head_ = slot;
  }
  slot->data = data;
  set_end(slot + 1, nullptr);
  ++count_;
  return tail_ = slot;
}

POSITION CPtrList::AddHead(void* data) {
  if (!head_) return AddTail(data);
  if (head_ == first_->slots()) {
    Block* const block = new_block();
    if (!block) return nullptr;
    POSITION const end = block->slots() + blockSize_;
    set_end(end, head_);
    block->next = first_;
    first_ = block;
    head_ = end;
  }
  --head_;
  head_->data = data;
  ++count_;
  return head_;
}

void* CPtrList::RemoveHead() {
  void* const data = head_->data;
  if (count_ == 1) {
    RemoveAll();
    return data;
  }
  const bool lastOfBlock = head_ + 1 == first_->slots() + blockSize_;
  GetNext(head_);
  if (lastOfBlock) ::operator delete(std::exchange(first_, first_->next));
  --count_;
  return data;
}

void CPtrList::RemoveAll() {
  while (first_) ::operator delete(std::exchange(first_, first_->next));
  last_ = nullptr;
  head_ = tail_ = nullptr;
  count_ = 0;
}
