#pragma once

/// A text run shape by shape on a pen, in one font or in both.

#include "qvtools/fonts/internal/shape_code.h"
#include "qvtools/fonts/shx.h"

namespace qv::detail {

/// A character taken off a text: its row and column in the big font, as far as it has them, else its byte.
struct FontCharacter {
  bool big = false;
  unsigned row = 0;
  unsigned column = 0;
  unsigned char byte = 0;
};

inline constexpr unsigned kFirstHzByte = 0xA1;
inline constexpr int kHzRows = 94;

/// A byte from 0xA1 on that another byte follows is a character of the big font.
inline FontCharacter next_character(const char*& text) {
  FontCharacter character;
  character.byte = static_cast<unsigned char>(*text++);
  if (character.byte < kFirstHzByte || !*text) return character;
  character.big = true;
  character.row = character.byte - kFirstHzByte;
  character.column = (static_cast<unsigned char>(*text++) - kFirstHzByte) & 0xFF;
  return character;
}

inline const unsigned char* txt_shape(const CShx& font, unsigned char code) {
  return font.m_pTxtData + font.m_pTxtIndex[code];
}

/// The shape of a two-byte character; null when there is none.
inline const unsigned char* hz_shape(const CShx& font, const FontCharacter& character) {
  if (!font.m_pHzIndex || character.row >= kHzRows || character.column >= kHzRows) return nullptr;
  const int offset = font.m_pHzIndex[character.row][character.column];
  return offset < 0 ? nullptr : font.m_pHzData + offset;
}

/// Runs a text in the text font. Before each character the pen is told with pen.begin(head, big) where it begins, and
/// whether it is of the big font.
template <class Pen>
void run_txt(const CShx& font, const char* text, Pen& pen) {
  if (!font.m_pTxtIndex || !text) return;
  for (; *text; ++text) {
    pen.begin(text, false);
    run_shape(txt_shape(font, static_cast<unsigned char>(*text)), pen);
  }
}

/// The same in both fonts. What the big font lacks leaves a space of its height.
template <class Pen>
void run_hz(const CShx& font, const char* text, Pen& pen) {
  if ((!font.m_pTxtIndex && !font.m_pHzIndex) || !text) return;
  while (*text) {
    const char* const head = text;
    const FontCharacter character = next_character(text);
    pen.begin(head, character.big);
    if (!character.big) {
      if (font.m_pTxtIndex) run_shape(txt_shape(font, character.byte), pen);
    } else if (const unsigned char* const shape = hz_shape(font, character)) {
      run_shape(shape, pen);
    } else {
      pen.step(font.m_fHzHeight, 0, false);
    }
  }
}

}  // namespace qv::detail
