#pragma once

#include <map>
#include <string>
#include <vector>

namespace qvdraw {

/// The data of a sample sheet, from a text file (UTF-8): sections "[name]" of lines "key = field, field ..." or "field,
/// field ..."; "#" begins a comment. Fields come as GBK. In braces the letters A, B and C before a number are the signs
/// of steel grades 1, 2 and 3: "{4C22}"; so is a letter alone: "{C}".
class Sample {
 public:
  struct Row {
    std::string key;  ///< empty when there is none
    std::string whole;
    std::vector<std::string> fields;
    const std::string& text(std::size_t i) const;
    float number(std::size_t i) const;
  };

  /// Reads the file; throws what is wrong with it.
  explicit Sample(const std::string& path);

  /// The lines of a section; throws when there is none, as all of these do when something is missing.
  const std::vector<Row>& rows(const std::string& section) const;
  const Row& row(const std::string& section, const std::string& key) const;
  std::string text(const std::string& section, const std::string& key) const { return row(section, key).whole; }
  float number(const std::string& section, const std::string& key) const { return row(section, key).number(0); }
  /// At least so many numbers, at most some hundred, of which "6*7800" stands for six.
  std::vector<float> numbers(const std::string& section, const std::string& key, std::size_t least) const;
  /// The lines of a section as they are, for notes.
  std::vector<std::string> lines(const std::string& section) const;

 private:
  std::string path_;
  std::map<std::string, std::vector<Row>> sections_;
};

/// An axis by its number from 0; throws where there is none.
float axis(const std::vector<float>& axes, float number);

/// A bar text such as "4C22" or "A8@100" with the signs of the steel grades.
std::string bar_text(const std::string& text);

}  // namespace qvdraw
