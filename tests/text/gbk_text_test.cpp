#include "qvtools/text/gbk_text.h"

#include <gtest/gtest.h>

#include <string>

#include "qvtools/platform/framework.h"

namespace {

// A two-byte character whose second byte is a backslash, and one whose second is a small letter.
#define LETTER_CHAR "\xB0\x61"

TEST(GbkText, StepsByCharacter) {
  EXPECT_EQ(qv::char_length(""), 0u);
  EXPECT_EQ(qv::char_length("a"), 1u);
  EXPECT_EQ(qv::char_length("\xD6\xD0"), 2u);
  EXPECT_EQ(qv::char_length("\xD6"), 1u);
  // A steel grade before its number is no character of two bytes.
  EXPECT_EQ(qv::char_length("\x82"
                            "12"),
            1u);
  EXPECT_EQ(qv::char_length("\xFF\x41"), 1u);
}

TEST(GbkText, IsCutBetweenCharacters) {
  char field[6];
  qv::copy_text(field, "ab\xD6\xD0\xCE\xC4");
  EXPECT_STREQ(field, "ab\xD6\xD0");
  EXPECT_TRUE(qv::equals_field(field, qv::cut_to_field("ab\xD6\xD0\xCE\xC4", sizeof field)));
  EXPECT_TRUE(qv::equals_field(field, "ab\xD6\xD0"));
  EXPECT_FALSE(qv::equals_field(field, "ab"));
  EXPECT_FALSE(qv::equals_field(field, "ab\xD6\xD0x"));
  EXPECT_FALSE(qv::equals_field(field, "ab\xD6\xD0xyz"));
  EXPECT_FALSE(qv::equals_field(field, ""));
  qv::copy_text(field, nullptr);
  EXPECT_STREQ(field, "");
  EXPECT_TRUE(qv::equals_field(field, ""));
}

TEST(GbkText, UpperCaseLeavesSecondBytes) {
  char text[] = "a" LETTER_CHAR "z1";
  qv::upper_case(text);
  EXPECT_STREQ(text, "A" LETTER_CHAR "Z1");
}

}  // namespace
