#pragma once

/// Standard error as a terminal for GBK texts.

#include <string>

namespace qv {

/// Prints a GBK text to standard error in the terminal's encoding; what cannot be converted becomes "?".
void print_to_terminal(const std::string& text);

/// Whether standard input is a terminal, so that somebody can answer.
bool input_is_terminal();

}  // namespace qv
