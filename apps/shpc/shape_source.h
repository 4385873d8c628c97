#pragma once

/// Shape source files, the usual text form of SHX fonts:
///
///     ; a comment to the end of its line
///     *code,bytes,name
///     codes separated by commas, over as many lines as needed, the last one 0
///
/// Numbers are decimal, or hexadecimal when they begin with a 0 and have more digits; a minus may stand before them;
/// parentheses and blanks group them for the reader and mean nothing. "*first-last,bytes,name" is a shape for all codes
/// of the range that have none of their own. Shape 0 describes the font. A big font may begin with the line "*BIGFONT
/// shapes,1,first,last", its one range of lead bytes.

#include <string>
#include <vector>

namespace shpc {

struct Shape {
  int line = 0;  // of the source, where it begins
  int code = 0;
  int lastCode = 0;  // of a range; else the code
  std::string name;
  std::vector<unsigned char> bytes;
};

struct Font {
  std::vector<Shape> shapes;  // shape 0 first, the others by rising code
  int firstLead = 0;          // 0 when the source names no range of lead bytes
  int lastLead = 0;
};

struct Error {
  int line;
  std::string text;
};

/// Reads a whole source; `errors` gets one entry for each fault, and is empty only when the font is complete and sound.
Font parse(const std::string& source, std::vector<Error>& errors);

}  // namespace shpc
