#include "platform/framework.h"

#include <bit>

#include "platform/text.h"

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
};

CPtrList::~CPtrList() {
  RemoveAll();
}

POSITION CPtrList::new_node(void* data) {
  if (!free_) {
    const auto n = static_cast<std::size_t>(blockSize_);
    auto* block = static_cast<Block*>(::operator new(sizeof(Block) + n * sizeof(qv::detail::ListNode), std::nothrow));
    if (!block) return nullptr;
    block->next = blocks_;
    blocks_ = block;
    auto* nodes = reinterpret_cast<POSITION>(block + 1);
    for (std::size_t i = n; i-- > 0;) free_ = new (nodes + i) qv::detail::ListNode{free_, nullptr, nullptr};
  }
  POSITION node = free_;
  free_ = node->next;
  node->data = data;
  ++count_;
  return node;
}

POSITION CPtrList::AddTail(void* data) {
  POSITION node = new_node(data);
  if (!node) return nullptr;
  node->next = nullptr;
  node->previous = tail_;
  (tail_ ? tail_->next : head_) = node;
  return tail_ = node;
}

POSITION CPtrList::AddHead(void* data) {
  POSITION node = new_node(data);
  if (!node) return nullptr;
  node->previous = nullptr;
  node->next = head_;
  (head_ ? head_->previous : tail_) = node;
  return head_ = node;
}

void* CPtrList::RemoveHead() {
  POSITION node = head_;
  head_ = node->next;
  (head_ ? head_->previous : tail_) = nullptr;
  node->next = free_;
  free_ = node;
  --count_;
  return node->data;
}

void CPtrList::RemoveAll() {
  while (blocks_) {
    Block* next = blocks_->next;
    ::operator delete(blocks_);
    blocks_ = next;
  }
  head_ = tail_ = free_ = nullptr;
  count_ = 0;
}
