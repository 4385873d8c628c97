#include "qvtools/text/numbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include "support/german_locale.h"

namespace {

constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

std::string fixed2(float v) {
  char text[qv::kMaxFixed2];
  return {text, qv::format_fixed2(text, v)};
}

template <class... Args>
std::string printed(const char* format, Args... args) {
  char text[512];
  std::snprintf(text, sizeof text, format, args...);
  return text;
}

template <class... Args>
std::string formatted(const char* format, Args... args) {
  char text[512];
  const int length = qv::format_text(text, sizeof text, format, args...);
  EXPECT_EQ(std::strlen(text), static_cast<std::size_t>(length));
  return text;
}

TEST(FormatFixed2, PrintsWhatPrintfPrints) {
  for (const float v : {0.0f,        -0.0f,   0.005f,  0.125f,  -0.375f,   0.625f,         2.675f,
                        -0.001f,     -0.005f, 99.995f, 9.995f,  999999.9f, 4294967.25f,    42949672.0f,
                        42949676.0f, 9.0e13f, 4.6e13f, 9.1e15f, 1e20f,     -3.4028235e38f, 1e-45f}) {
    EXPECT_EQ(fixed2(v), printed("%.2f", static_cast<double>(v)));
  }
  EXPECT_EQ(fixed2(kInf), "inf");
  EXPECT_EQ(fixed2(-kInf), "-inf");
  EXPECT_EQ(fixed2(kNan), "nan");
}

TEST(FormatFixed2, AgreesWithPrintfOnRandomFloats) {
  std::mt19937 random(7);
  for (int i = 0; i < 300000; ++i) {
    const auto bits = static_cast<std::uint32_t>(random());
    // Every second one is a tie or near one.
    const float v = i % 2 ? std::bit_cast<float>(bits) : static_cast<float>(static_cast<int>(bits >> 9) - 4194304) / 8;
    if (std::isnan(v)) continue;
    ASSERT_EQ(fixed2(v), printed("%.2f", static_cast<double>(v)));
  }
}

TEST(FormatInt, PrintsTheWholeRange) {
  for (const int v : {0, 7, -1, 10, 99, 100, 12345, 1000000000, INT_MAX, INT_MIN}) {
    char text[16];
    EXPECT_EQ(std::string(text, qv::format_int(text, v)), std::to_string(v));
  }
}

TEST(ParseReal, GivesTheResultsOfAtof) {
  for (const char* text : {"0",
                           "-0",
                           " \t12.5",
                           "+3",
                           "-.5",
                           "5.",
                           "1e3",
                           "1.5E-2",
                           "1e",
                           "1e+",
                           "2x",
                           ".",
                           "-",
                           "",
                           "abc",
                           "0.1",
                           "123456789012345678901234567890",
                           "0.000000000000000000000000123",
                           "1e400",
                           "-1e400",
                           "1e-400",
                           "0e999",
                           "4.9e-324",
                           "179769313486231570000e289",
                           "9007199254740993"}) {
    const double expected = std::atof(text);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(qv::parse_real(text)), std::bit_cast<std::uint64_t>(expected)) << text;
  }
  for (const char* word : {"inf", "nan", "0x10"}) EXPECT_EQ(qv::parse_real(word), 0.0) << word;
  // Out of range only by their many digits.
  std::string nines(400, '9');
  EXPECT_EQ(qv::parse_real(nines.append("e-300").c_str()), 1e100);
  nines.resize(400);
  EXPECT_EQ(qv::parse_real(nines.append("e-10").c_str()), std::numeric_limits<double>::infinity());
  std::string zeros("0.");
  EXPECT_EQ(qv::parse_real(zeros.append(400, '0').append("1e10").c_str()), 0.0);
}

TEST(ParseReal, ReadsBackEveryPrintedDouble) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 100000; ++i) {
    const double v = i % 2 ? std::bit_cast<double>(random()) : static_cast<double>(random() >> 20) / 10000;
    if (std::isnan(v) || std::isinf(v)) continue;
    const std::string text = printed(i % 4 ? "%.17g" : "%.4f", v);
    ASSERT_EQ(qv::parse_real(text.c_str()), std::strtod(text.c_str(), nullptr)) << text;
  }
}

TEST(ParseInt, SaturatesAndIgnoresWhatFollows) {
  EXPECT_EQ(qv::parse_int("  -12abc"), -12);
  EXPECT_EQ(qv::parse_int("+7.9"), 7);
  EXPECT_EQ(qv::parse_int("x"), 0);
  EXPECT_EQ(qv::parse_int("2147483647"), INT_MAX);
  EXPECT_EQ(qv::parse_int("2147483648"), INT_MAX);
  EXPECT_EQ(qv::parse_int("-2147483648"), INT_MIN);
  EXPECT_EQ(qv::parse_int("-99999999999999999999999"), INT_MIN);
  EXPECT_EQ(qv::parse_long("99999999999999999999999"), LONG_MAX);
}

TEST(TruncInt, GoesTowardZeroAndSaturates) {
  EXPECT_EQ(qv::TruncInt(2.9), 2);
  EXPECT_EQ(qv::TruncInt(-2.9), -2);
  EXPECT_EQ(qv::TruncInt(2147483647.5), INT_MAX);
  EXPECT_EQ(qv::TruncInt(-2147483648.5), INT_MIN);
  EXPECT_EQ(qv::TruncInt(1e300), INT_MAX);
  EXPECT_EQ(qv::TruncInt(-1e300), INT_MIN);
  EXPECT_EQ(qv::TruncInt(static_cast<double>(kNan)), 0);
}

TEST(FormatText, TakesEveryConversionOfPrintf) {
  EXPECT_EQ(formatted("%5d|%-5d|%05d|%+d|%x|%#o", 42, 42, 42, 42, 255, 8), "   42|42   |00042|+42|ff|010");
  EXPECT_EQ(formatted("%ld %lld %zu %hhd", -5L, 1LL << 40, sizeof(int), 300), "-5 1099511627776 4 44");
  EXPECT_EQ(formatted("%8.3f|%-8.1f|%08.2f|%+.0f|%g|%e|%Lf", 1.5, 2.25, -3.5, 2.5, 1e-5, 12.5, 0.5L),
            printed("%8.3f|%-8.1f|%08.2f|%+.0f|%g|%e|%Lf", 1.5, 2.25, -3.5, 2.5, 1e-5, 12.5, 0.5L));
  EXPECT_EQ(formatted("%*d|%-*d|%.*f|%5s|%.2s|%c|%%|%6.1f", 4, 1, 4, 2, 1, 0.25, "ab", "xyz", 'q',
                      static_cast<double>(-kInf)),
            "   1|2   |0.2|   ab|xy|q|%|  -inf");
  int untouched = 3;
  EXPECT_EQ(formatted("a%nb%", &untouched), "ab");
  EXPECT_EQ(untouched, 3);
}

TEST(FormatText, PrintsRealsAsPrintfDoes) {
  std::mt19937_64 random(20);
  const auto below = [&random](std::uint64_t limit) { return static_cast<double>(random() % limit); };
  const char* const formats[] = {"%.0f", "%.1f", "%.2f", "%.3f", "%f", "%.9f"};
  for (int i = 0; i < 200000; ++i) {
    const double any = std::bit_cast<double>(random());
    const double tie = (below(2000000) * 10 + 5) / std::pow(10.0, i % 10), binary = below(1 << 30) / (1 << i % 14);
    for (const double v : {any, tie, -binary, static_cast<double>(static_cast<float>(tie)), 1e15 + binary}) {
      const char* const format = formats[i % 6];
      ASSERT_EQ(formatted(format, v), printed(format, v)) << std::hexfloat << v;
    }
  }
}

TEST(FormatText, CutsBetweenCharacters) {
  char text[6];
  EXPECT_EQ(qv::format_text(text, sizeof text, "%s", "abcdefgh"), 5);
  EXPECT_STREQ(text, "abcde");
  EXPECT_EQ(qv::format_text(text, sizeof text, "a%s", "\xD6\xD0\xCE\xC4\xD7\xD6"), 5);
  EXPECT_STREQ(text, "a\xD6\xD0\xCE\xC4");
  EXPECT_EQ(qv::format_text(text, sizeof text, "%s\xCE\xC4", "ab\xD6\xD0"), 4);
  EXPECT_STREQ(text, "ab\xD6\xD0");
  EXPECT_EQ(qv::format_text(text, sizeof text, "%200.1f", 1.0), 5);
  EXPECT_STREQ(text, "     ");
  EXPECT_EQ(qv::format_text(text, 1, "abc"), 0);
}

TEST(Numbers, DoNotLookAtTheLocale) {
  const qvtest::GermanLocale german;
  if (!german.available()) GTEST_SKIP() << "no German locale here";
  ASSERT_EQ(printed("%.1f", 0.5), "0,5");
  EXPECT_EQ(fixed2(-1234.5f), "-1234.50");
  EXPECT_EQ(qv::parse_real("1.5e1"), 15.0);
  EXPECT_EQ(qv::parse_real("1,5"), 1.0);
  EXPECT_EQ(qv::parse_real("0.1234567890123456789"), 0.1234567890123456789);
  EXPECT_EQ(formatted("%.2f|%7.2f|%-7.2f|%e|%g|%.0f", 0.5, -1.5, 2.5, 1.5, 0.25, 3.0),
            "0.50|  -1.50|2.50   |1.500000e+00|0.25|3");
}

}  // namespace
