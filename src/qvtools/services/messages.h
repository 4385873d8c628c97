#pragma once

/// Error reports and the calculation-message window, which belong to the whole process: reports of several threads are
/// shown one after another.

#include "qvtools/api.h"

/// The last abandon code: 0 while all is well. Computations test it after they report and give up when it is set; only
/// the host program resets it.
extern QV_API int QV_ERROR_CODE;

/// The one entry of all reports. Waiting window messages are dispatched first; then, by the code:
///
/// | code | what is done | QV_ERROR_CODE |
/// |---|---|---|
/// | -9999 | hides the message window | |
/// | -8888 | the text "TRUE" switches output to the message window on, any other text off | |
/// | -1, -2, 0 to 100 | appends the text to the message window, while output is on | |
/// | 101 to 200 | plain message box | set to the code |
/// | 201 to 300 | information box | |
/// | 301 to 400 | stop box | set to the code |
/// | 1000 to 2000 | question box, OK or Cancel | set to 1 on Cancel |
/// | any other | nothing | |
///
/// The message window is created by the first call. Codes 101 to 999 hide it; every other code but -9999 shows it. It
/// keeps some 400 lines: beyond that the oldest 50 are dropped. Texts are GBK bytes; null is the empty text.
QV_API void tell_error(int code, const char* text);

/// `tell_error` with a text made as `printf` makes it, cut at 599 bytes between characters. A text that is no format,
/// such as a name from a file, goes to `tell_error`.
QV_API void tell_error1(int code, const char* format, ...) QV_FORMAT(2, 3);

/// Appends "[code]  text", made as `printf` makes it and cut at 599 bytes, to the log file wx_temp.txt at the root of
/// drive C (elsewhere in the temporary directory); code 0 starts a new log. No line end is added. Nothing happens when
/// the file cannot be written, or something else than a file, a link too, stands at its place.
QV_API void tell_error2(int code, const char* format, ...) QV_FORMAT(2, 3);
