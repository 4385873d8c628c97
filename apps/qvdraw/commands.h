#pragma once

/// What the commands are asked for, and the commands themselves. Each throws `UsageError` when what it is asked for
/// makes no sense, and `std::runtime_error`, with one line for the user, when it fails.

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "picture.h"
#include "qvtools/plot/plot.h"

namespace qvdraw {

class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct DemoRequest {
  std::string directory;
  std::string samples;  ///< where the data of the sheets lies
};
void run_demo(const DemoRequest& request);

struct RenderRequest {
  std::string drawing;
  qv::ImportOptions import;
  std::string picture;
  PictureOptions options;
};
void run_render(const RenderRequest& request);

/// The pens of plots where none are asked for.
inline constexpr const char* kUsualPens = "GB b=0.7";

struct PlotRequest {
  std::vector<std::string> drawings;
  std::string out;
  qv::ImportOptions import;
  qv::PlotOptions options;
  std::string pens = kUsualPens;  ///< a built-in table, or a file
  bool grey = false;
  bool colors = false;
};
void run_plot(const PlotRequest& request);

struct ConvertRequest {
  std::string drawing;
  std::string out;
  qv::ImportOptions import;
  bool unitGiven = false;  ///< else millimetres, where the drawing says its unit
  bool portable = false;   ///< signs of the fonts as codes that other programs know, and a header with the code page
};
void run_convert(const ConvertRequest& request);

struct InfoRequest {
  std::string drawing;
  qv::ImportOptions import;
  bool json = false;
};
void run_info(const InfoRequest& request);

struct DiffRequest {
  std::string before;
  std::string after;
  std::string out;  ///< a picture, a .pdf or a .dxf; empty for none
  qv::ImportOptions import;
  PictureOptions options;
  double tolerance = 0.01;
  bool json = false;
};
/// 0 when the drawings are the same, 1 when they differ.
int run_diff(const DiffRequest& request);

struct SlideRequest {
  std::string slide;  ///< a file, or LIBRARY.NAME
  std::string out;    ///< a picture, or a file that ends in .dxf or .scr
  CSize size{800, 600};
};
void run_slide(const SlideRequest& request);

struct SlidesRequest {
  std::string library;
  std::string picture;    ///< of all slides; empty for none
  std::string directory;  ///< for the slides as files; empty for none
  CSize size{1200, 900};  ///< its width is that of the picture
};
void run_slides(const SlidesRequest& request);

struct FontsRequest {
  std::string font;  ///< a shape file of any kind
  std::string out;   ///< the font made plain, or a picture of its shapes; empty: describe it
  bool big = false;  ///< of a Unifont the characters of two bytes
  std::optional<qv::CodePage> page;
};
void run_fonts(const FontsRequest& request);

struct DatabaseRequest {
  std::string database;
  std::string segment;  ///< empty: list the segments
  std::string key;      ///< empty: list the segment's items
  bool json = false;
};
void run_db(const DatabaseRequest& request);

struct MaterialsRequest {
  std::string file;  ///< of user-defined grades; empty for none
};
void run_materials(const MaterialsRequest& request);

struct ContourRequest {
  std::string field;
  std::string picture;
  int value = 0;
  CSize size{1200, 800};
};
void run_contour(const ContourRequest& request);

struct ValueRequest {
  std::string field;
  float x = 0;
  float y = 0;
  int value = 0;
};
void run_value(const ValueRequest& request);

}  // namespace qvdraw
