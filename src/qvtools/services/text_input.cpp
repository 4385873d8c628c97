#include "qvtools/services/text_input.h"

#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "qvtools/platform/host.h"
#include "qvtools/services/captions.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/services/messages.h"
#include "qvtools/system/textfile.h"
#include "qvtools/text/gbk_text.h"
#include "qvtools/text/numbers.h"

namespace {

constexpr int kUnitLength = 100;
constexpr std::size_t kTokenSize = 100;
constexpr std::uint32_t kExhausted = 0xFFFFFFFF;
constexpr std::size_t kMostNumbers = 1000000;

thread_local std::uint32_t g_scanPosition = 0;

/// The next character with CR LF as one "\n"; a separator read may be put back.
int next_char(std::FILE* fp) {
  const int c = std::getc(fp);
  if (c != '\r') return c;
  const int next = std::getc(fp);
  if (next == '\n') return next;
  if (next != EOF) std::ungetc(next, fp);
  return c;
}

bool separates_units(int c) {
  return c == ' ' || c == ',' || c == '\n';
}

}  // namespace

void fgets_skip_comment(char* buf, int size, std::FILE* fp) {
  if (size < 2 || std::feof(fp)) {
    if (size > 0) buf[0] = '\0';
    return;
  }
  bool any = false;
  do {
    if (!qv::read_line(buf, size, fp)) break;
    any = true;
  } while (std::strncmp(buf, "##", 2) == 0 && !std::feof(fp));
  if (!any) buf[0] = '\0';
}

void read_one_unit(char* out, std::FILE* fp) {
  int c = next_char(fp);
  while (separates_units(c)) c = next_char(fp);
  int length = 0;
  while (c != EOF) {
    if (separates_units(c) || length == kUnitLength) {
      std::ungetc(c, fp);
      break;
    }
    out[length++] = static_cast<char>(c);
    c = next_char(fp);
  }
  out[length] = '\0';
}

void read_one_unit_from_string(char* out, const char* text, int* pos) {
  const std::size_t size = std::strlen(text);
  out[0] = '\0';
  if (*pos < 0 || static_cast<std::size_t>(*pos) > size) return;
  const char* p = text + *pos;
  while (*p == ' ' || *p == ',') ++p;
  int length = 0;
  while (*p) {
    const char c = *p++;
    if (c == ' ' || c == ',' || length == kUnitLength) break;
    out[length++] = c;
  }
  out[length] = '\0';
  *pos = static_cast<int>(p - text);
}

namespace {

bool is_space(char c) {
  return c == ' ' || c == '\t';
}
bool ends_line(char c) {
  return c == '\n' || c == '\0';
}

/// One field of a line, at most 99 bytes of it.
struct Token {
  char text[kTokenSize];
  bool found;
};

/// Takes the field at `position`, which moves on or becomes exhausted.
Token next_token(const char* text, std::uint32_t& position) {
  Token token{};
  if (position == kExhausted) return token;
  const char* p = text + position;
  while (is_space(*p)) ++p;
  if (ends_line(*p)) {
    position = kExhausted;
    return token;
  }
  const char* const begin = p;
  while (*p != ',' && !is_space(*p) && !ends_line(*p)) ++p;
  const std::size_t length = std::min(static_cast<std::size_t>(p - begin), kTokenSize - 1);
  std::memcpy(token.text, begin, length);
  position = ends_line(*p) ? kExhausted : static_cast<std::uint32_t>(p + 1 - text);
  token.found = true;
  return token;
}

/// The deciding letter of the conversion at `format`, 0 without one; `format` moves behind the conversion's comma, or
/// stays at the end of the format.
char next_conversion(const char*& format) {
  char letter = 0;
  for (; !ends_line(*format); ++format) {
    if (*format == ',') return ++format, letter;
    if (std::strchr("sdlfg*", *format)) letter = *format;
  }
  return letter;
}

/// Where the fields go: a variadic list by itself.
struct Targets {
  std::va_list list;
};

/// Stores a field, or the value of a missing one, into the next argument. Returns whether the letter is known.
bool store(char letter, const Token& token, const char* missingText, Targets& targets) {
  switch (letter) {
    case 's':
      std::strcpy(va_arg(targets.list, char*), token.found ? token.text : missingText);
      return true;
    case 'd':
      *va_arg(targets.list, int*) = qv::parse_int(token.text);
      return true;
    case 'l':
      *va_arg(targets.list, long*) = qv::parse_long(token.text);
      return true;
    case 'f':
      *va_arg(targets.list, float*) = static_cast<float>(qv::parse_real(token.text));
      return true;
    case 'g':
      *va_arg(targets.list, double*) = qv::parse_real(token.text);
      return true;
    default:
      return letter == '*';
  }
}

void tell_unsupported(const char* message) {
  qv::CurrentHost().ShowBox(message, qv::BoxKind::Plain);
}

}  // namespace

void sscanf_next_begin() {
  g_scanPosition = 0;
}

int sscanf_next(const char* text, const char* format, ...) {
  const char letter = next_conversion(format);
  // The position may be that of a longer text before this one.
  if (text && g_scanPosition != kExhausted && std::memchr(text, '\0', g_scanPosition)) g_scanPosition = kExhausted;
  const Token token = text ? next_token(text, g_scanPosition) : Token{};
  Targets targets;
  va_start(targets.list, format);
  const bool known = store(letter, token, "\n", targets);
  va_end(targets.list);
  if (!known) tell_unsupported("ssanf_next not support this type in This Version !");
  return token.found ? 1 : 0;
}

int qv::vsscanf(const char* text, const char* format, ...) {
  if (!text) text = "";
  std::uint32_t position = 0;
  int stored = 0;
  Targets targets;
  va_start(targets.list, format);
  while (!ends_line(*format)) {
    const char letter = next_conversion(format);
    const Token token = next_token(text, position);
    if (!store(letter, token, "", targets)) {
      tell_unsupported("vssanf not support this type in This Version !");
    } else if (token.found && letter != '*') {
      ++stored;
    }
  }
  va_end(targets.list);
  return stored;
}

namespace {

/// The two ends of a range token such as "3~5", the smaller first.
std::pair<int, int> parse_range(char* token) {
  for (char* p = token; *p; p += qv::char_length(p)) {
    if (*p == '~') *p = ' ';
  }
  char number[kUnitLength + 1];
  int position = 0;
  read_one_unit_from_string(number, token, &position);
  const int first = qv::parse_int(number);
  read_one_unit_from_string(number, token, &position);
  const int second = qv::parse_int(number);
  return std::minmax({first, second});
}

/// The numbers of a list, as far as the limit allows; tells whether there was room for all of them.
bool read_list(const char* text, std::vector<int>& numbers) {
  std::uint32_t position = 0;
  for (Token field; (field = next_token(text, position)).found;) {
    char* const token = field.text;
    const bool range = std::strchr(token, '~') != nullptr;
    const int number = range ? 0 : qv::parse_int(token);
    const auto [first, last] = range ? parse_range(token) : std::pair(number, number);
    for (std::int64_t i = first; i <= last; ++i) {
      if (numbers.size() == kMostNumbers) return false;
      numbers.push_back(static_cast<int>(i));
    }
  }
  return true;
}

}  // namespace

void FenXi_String1(const char* text, CArray<int, int>* out) {
  sscanf_next_begin();
  const auto read = [&] {
    std::vector<int> numbers;
    const bool complete = read_list(text ? text : "", numbers);
    const int start = out->GetSize();
    out->SetSize(start + static_cast<int>(numbers.size()));
    std::copy(numbers.begin(), numbers.end(), out->begin() + start);
    return complete;
  };
  const bool complete = qv::detail::unless_out_of_memory(read, true);
  if (!complete) tell_error(301, qv::captions::kTooManyNumbers);
}

float PinMianChaZhi(const float* x, const float* y, const float* z, float px, float py) {
  const float dx1 = x[1] - x[0], dx2 = x[2] - x[0];
  const float dy1 = y[1] - y[0], dy2 = y[2] - y[0];
  const float dz1 = z[1] - z[0], dz2 = z[2] - z[0];
  float d = dx1 * dy2 - dy1 * dx2;
  if (std::fabs(d) < 1e-5f) d = 1e-5f;
  const float a = -(dy1 * dz2 - dz1 * dy2) / d;
  const float b = -(dz1 * dx2 - dx1 * dz2) / d;
  const float c = z[0] - a * x[0] - b * y[0];
  return a * px + b * py + c;
}
