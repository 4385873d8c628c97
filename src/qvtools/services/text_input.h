#pragma once

/// Reading of text: comment-skipping lines, two tokenizers, and a small reader of comma-separated fields.

#include <cstdio>

#include "qvtools/platform/framework.h"

/// Reads the next line of at most size - 1 bytes that does not begin with "##"; CR LF and LF both arrive as "\n". At
/// the end of the file `buf` becomes empty, but a comment on the last line stays in it.
QV_API void fgets_skip_comment(char* buf, int size, std::FILE* fp);

/// Reads one unit: what stands between blanks, commas and line ends (tabs do not separate). `out` must hold 101 bytes;
/// a longer unit comes in pieces of 100. The stream is left at the separator, or at its end; `out` is empty when no
/// unit is left.
QV_API void read_one_unit(char* out, std::FILE* fp);

/// The same from a text (blanks and commas separate), from index *pos on, which moves behind the unit and its
/// separator. A unit of more than 100 bytes is cut: the 101st byte is dropped and the rest is the next unit. `out` is
/// empty, with *pos at the terminator, when no unit is left.
QV_API void read_one_unit_from_string(char* out, const char* text, int* pos);

/// Sets the position of `sscanf_next`, which all of a thread's calls share, back to the start.
QV_API void sscanf_next_begin();

/// Reads the next field of `text`, from the shared position on, into the first pointer argument. Only the first
/// conversion of `format` counts, and its last letter decides: s copies to a `char*` of 100 bytes, d reads an int, l a
/// long, f a float, g a double; * skips a field and takes no argument. Fields end at a comma, a blank or a tab; blanks
/// and tabs before them are skipped, so "1,,2" has an empty field (it reads as 0) and "1  2" has none. Returns 1, or 0
/// when no field is left, or the text ends before the position (that of a longer text before it): numbers are then 0
/// and a text is "\n".
QV_API int sscanf_next(const char* text, const char* format, ...);

/// Appends a list of integers such as "1 3~5,8" to `out`; a tilde gives every number from the one to the other.
/// Stops with a stop box (code 301) when it has appended 1,000,000 numbers and there are more. Resets the shared
/// position of `sscanf_next`.
QV_API void FenXi_String1(const char* text, CArray<int, int>* out);

/// The value at (px, py) of the plane through the three points (x[i], y[i], z[i]), in single precision. A determinant
/// nearer to 0 than 1e-5 counts as 1e-5.
QV_API float PinMianChaZhi(const float* x, const float* y, const float* z, float px, float py);

namespace qv {

/// Reads all fields that the comma-separated conversions of `format` ask for, as `sscanf_next` does, from the start of
/// `text` (null is the empty text). Returns how many were read into arguments; the arguments left over become 0 or the
/// empty text. The quirk that the last letter decides stays: %ld reads an int, %lf a float, %lg a double.
QV_API int vsscanf(const char* text, const char* format, ...);

}  // namespace qv
