#include "qvtools/text/code_page.h"

#include <gtest/gtest.h>

namespace {

TEST(CodePages, GbkAndUtf8TurnIntoEachOther) {
  EXPECT_EQ(qv::to_gbk("梁 KL-1 ①丂€"), "\xC1\xBA KL-1 \xA2\xD9\x81\x40\\U+20AC");
  EXPECT_EQ(qv::from_gbk("\xC1\xBA KL-1 \xA2\xD9\x81\x40"), "梁 KL-1 ①丂");
  EXPECT_EQ(qv::to_gbk("ö😀"), "\\U+00F6\\U+D83D\\U+DE00");
  // Signs of the fonts go there and back; so does every two-byte character.
  EXPECT_EQ(qv::to_gbk(qv::from_gbk("\x82"
                                    "25\x8B")),
            "\x82"
            "25\x8B");
  int characters = 0;
  for (int a = 0x81; a <= 0xFE; ++a)
    for (int b = 0x40; b <= 0xFE; ++b) {
      const std::string code{static_cast<char>(a), static_cast<char>(b)};
      std::u32string points;
      qv::decode_text(qv::CodePage::Gbk, code, points);
      if (points.size() != 1) continue;
      ++characters;
      EXPECT_EQ(qv::to_gbk(qv::from_gbk(code)), code) << a << ' ' << b;
    }
  EXPECT_EQ(characters, 21791);
}

TEST(CodePages, PagesAreDecodedAndNamed) {
  const struct {
    const char* name;
    const char* bytes;
    std::u32string_view points;
  } kCases[] = {{"ansi_1252", "\xE9\x80", U"\u00E9\u20AC"},
                {"DOS437", "\xE1", U"\u00DF"},
                {"dos 866", "\x80", U"\u0410"},
                {"ANSI_1251", "\xC0", U"\u0410"},
                {"Big5", "\xA4\xA4", U"\u4E2D"},
                {"ANSI_932", "\x92\x86\xB1", U"\u4E2D\uFF71"},
                {"ksc5601", "\xB0\xA1", U"\uAC00"},
                {"johab", "\x88\x61", U"\uAC00"},
                {"GB_2312-80", "\xD6\xD0", U"\u4E2D"},
                {"iso8859_5", "\xB0", U"\u0410"},
                {"macintosh", "\x8E", U"\u00E9"},
                {"cp1250", "\xE8", U"\u010D"},
                {"UTF-8", "\xF0\x9F\x98\x80", U"\U0001F600"}};
  for (const auto& c : kCases) {
    const std::optional<qv::CodePage> page = qv::code_page_named(c.name);
    ASSERT_TRUE(page) << c.name;
    std::u32string points;
    qv::decode_text(*page, c.bytes, points);
    EXPECT_EQ(points, c.points) << c.name;
    EXPECT_EQ(qv::code_page_named(qv::code_page_name(*page)), page) << c.name;
  }
  EXPECT_FALSE(qv::code_page_named("klingon"));
  EXPECT_FALSE(qv::is_utf8("\xC0\x80"));
  EXPECT_FALSE(qv::is_utf8("\xED\xA0\x80"));
}

TEST(CodePages, ForeignLettersAreDrawnAsTheirLikes) {
  EXPECT_EQ(qv::drawn_text("\\U+00F6x\xD6\xD0\\U+9999\\U+D83D\\U+DE00"), "ox\xD6\xD0\xA1\xF5\xA1\xF5");
  EXPECT_EQ(qv::drawn_text("\xD6\x5CU+00F6 \\U+00"), "\xD6\x5CU+00F6 \\U+00") << "a second byte is no backslash";
}

}  // namespace
