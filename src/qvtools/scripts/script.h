#pragma once

/// Command-script lines for a CAD system that replays them, appended to an open text stream. Each function writes one
/// command line, in which a blank stands for the Enter key. Coordinates are in drawing units with two decimals, angles
/// in degrees. The stream stays the caller's, and is not checked unless stated; that of a
/// `qv::SavedFile`, made for CR LF, gives a file that is whole or absent.

#include <cstdio>

#include "qvtools/api.h"

/// A circle, and a line.
QV_API void acad_circle(std::FILE* f, float x, float y, float r);
QV_API void acad_line(std::FILE* f, float x1, float y1, float x2, float y2);
/// A face of three corners.
QV_API void acad_3dface(std::FILE* f, float x1, float y1, float x2, float y2, float x3, float y3);
/// A polyline of one segment, or through n >= 1 points, with the width w at both ends.
QV_API void acad_pline(std::FILE* f, float x1, float y1, float x2, float y2, float w);
QV_API void acad_pline_mut_p(std::FILE* f, int n, const float* x, const float* y, float w);
/// The arc about a centre from a start point counter-clockwise to an end point.
QV_API void acad_arc(std::FILE* f, float cx, float cy, float x1, float y1, float x2, float y2);

/// Text of height h from (x, y), level or at an angle.
QV_API void acad_text(std::FILE* f, float x, float y, const char* text, float h);
QV_API void acad_text_angle(std::FILE* f, float x, float y, const char* text, float h, float angle);
/// Text at the i-th of n equal steps along the line from point 1 to point 2, at the line's angle. `line` counts text
/// lines of 1.2 h to the left of the line, with 0.2 h of clearance; negative ones lie to its right. n = 0 acts as 1.
QV_API void acad_text_along_line(std::FILE* f, float x1, float y1, float x2, float y2, int n, int i, const char* text,
                                 float h, int line);
/// The same place, with the text at the line's angle + 90 degrees.
QV_API void acad_text_vertical_line(std::FILE* f, float x1, float y1, float x2, float y2, int n, int i,
                                    const char* text, float h, int line);
/// Text centred at the i-th of n equal steps along the arc about (cx, cy) from point 1 counter-clockwise to the
/// direction of point 2, along the tangent (the angle of the place + 90 degrees). `line` counts text lines of 1.2 h
/// towards the centre, with 0.2 h of clearance. A byte of text is taken to be 0.75 h wide. n = 0 acts as 1.
QV_API void acad_text_along_arc(std::FILE* f, float cx, float cy, float x1, float y1, float x2, float y2, int n, int i,
                                const char* text, float h, float line);

/// The LAYER command: an option with its argument. COLOR and ZOOM with their argument.
QV_API void acad_layer(std::FILE* f, const char* option, const char* argument);
QV_API void acad_color(std::FILE* f, const char* color);
QV_API void acad_zoom(std::FILE* f, const char* argument);

/// A block between the markers "%%%[QuillonScript%%%" and "%%%QuillonScript]%%%", on a line of its own. Returns 1.
QV_API int QuillonScript(std::FILE* f, const char* text);
/// A text block: style and height in front of a text of any length, between the markers, without line breaks. Returns
/// 0, with nothing written, when f is null; else 1.
QV_API int QuillonScript_Text(std::FILE* f, const char* text, unsigned long style, float h);
/// A text block of height 1 with style 0 (flag not 0) or 255. Returns 1.
QV_API int ColorText(std::FILE* f, const char* text, int flag);
