#include "qvtools/widgets/viewer/find.h"

#include <algorithm>
#include <unordered_map>

namespace qv::viewer {

namespace {

/// The code points of a text as they are compared.
std::u32string folded(std::string_view utf8, bool matchCase) {
  constexpr char32_t kFullWidth = 0xFF01, kFullWidthEnd = 0xFF5E, kAscii = 0x21;
  std::u32string points, out;
  qv::decode_text(qv::CodePage::Utf8, utf8, points);
  for (std::size_t i = 0; i < points.size(); ++i) {
    char32_t c = points[i];
    if (c == U'%' && i + 2 < points.size() && points[i + 1] == U'%') {
      const char32_t code = points[i + 2] | 0x20;
      if (const char32_t sign = code == U'c' ? U'Φ' : code == U'd' ? U'°' : code == U'p' ? U'±' : 0) {
        out += sign;
        i += 2;
        continue;
      }
    }
    // The text font's own signs of degree, plus-minus and diameter.
    if (c == 0x7F) c = U'°';
    if (c == 0xF780 || c == 0x80) c = U'±';
    if (c == 0xF781 || c == 0x81 || c == U'φ' || c == U'ø' || c == U'Ø' || c == U'⌀') c = U'Φ';
    if (c >= kFullWidth && c <= kFullWidthEnd) c = c - kFullWidth + kAscii;
    if (c == 0x3000) c = U' ';
    if (!matchCase && c >= U'a' && c <= U'z') c -= 0x20;
    out += c;
  }
  return out;
}

/// Chinese has no blanks between words: only letters and digits join.
bool is_of_word(char32_t c) {
  return (c >= U'0' && c <= U'9') || (c >= U'a' && c <= U'z') || (c >= U'A' && c <= U'Z') || c == U'_';
}

class Finder {
 public:
  explicit Finder(const FindWhat& what) : what_(what), words_(folded(what.words, what.matchCase)) {}

  bool is_in(std::string_view utf8) const {
    if (words_.empty()) return false;
    const std::u32string text = folded(utf8, what_.matchCase);
    for (std::size_t at = text.find(words_); at != std::u32string::npos; at = text.find(words_, at + 1)) {
      if (!what_.wholeWord) return true;
      const std::size_t end = at + words_.size();
      const bool begins = at == 0 || !is_of_word(text[at - 1]) || !is_of_word(text[at]);
      const bool ends = end == text.size() || !is_of_word(text[end]) || !is_of_word(text[end - 1]);
      if (begins && ends) return true;
    }
    return false;
  }

 private:
  const FindWhat& what_;
  std::u32string words_;
};

}  // namespace

bool holds_words(const std::string& text, const FindWhat& what) {
  return Finder(what).is_in(text);
}

std::vector<Hit> find_texts(Drawing& drawing, const FindWhat& what, const ViewAngles& angles) {
  const Finder finder(what);
  std::vector<Hit> hits;
  const auto look_at = [&](int entity, ACAD_TEXT& text, const std::string& layer, CFPoint shift) {
    const std::string words = qv::from_gbk(text.m_szText);
    if (!finder.is_in(words)) return;
    CFRect box = angles.is_plan() ? text.GetFRect() : text.GetFRect3D(angles.a, angles.b);
    box += shift;
    hits.push_back({entity, words, layer, box, text.m_fHeight});
  };
  for (int i = 0; i < drawing.count(); ++i) {
    if (!drawing.is_shown(i)) continue;
    ACAD_ENTITY& entity = drawing.entity(i);
    if (entity.GetType() == ACAD_TYPE_TEXT)
      look_at(i, static_cast<ACAD_TEXT&>(entity), drawing.layer_of(i).name, {0, 0});
    if (entity.GetType() == ACAD_TYPE_INSERT)
      drawing.for_each_text_in(i, angles,
                               [&](ACAD_TEXT& text, CFPoint shift) { look_at(i, text, text.m_szLayer, shift); });
  }
  return hits;
}

}  // namespace qv::viewer
