#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace qvdraw {

class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The words behind a command: options ("--name value", "--flag", "-o value") and the rest in order.
class Arguments {
 public:
  Arguments(int count, char** words) : words_(words, words + count) {}

  /// Takes the words apart. `options` take a value, `flags` do not. Unknown or repeated options, and another number of
  /// other words than `operands`, are usage errors.
  void expect(std::size_t operands, const std::vector<std::string>& options,
              const std::vector<std::string>& flags = {}) const;
  /// The same for a call with `least` to `most` other words. A negative number is no option.
  void expect_between(std::size_t least, std::size_t most, const std::vector<std::string>& options,
                      const std::vector<std::string>& flags = {}) const;
  /// How many other words there were.
  std::size_t count() const { return operands_.size(); }

  const std::string& operand(std::size_t i) const { return operands_[i]; }
  bool has(const std::string& option) const { return values_.count(option) > 0; }
  /// The option's value; the default when it was not given.
  std::string value(const std::string& option, const std::string& otherwise = "") const;
  /// The option's value; a usage error when it was not given.
  std::string required(const std::string& option) const;
  /// `count` numbers that commas (or an x) separate; a usage error when they are not that.
  std::vector<double> numbers(const std::string& option, std::size_t count) const;

 private:
  std::vector<std::string> words_;
  mutable std::map<std::string, std::string> values_;
  mutable std::vector<std::string> operands_;
};

}  // namespace qvdraw
