#include "command_line.h"

#include <CLI/CLI.hpp>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <numbers>

#include "commands.h"
#include "common/picture_file.h"
#include "common/plotting.h"
#include "qvtools/version.h"

namespace qvdraw {

namespace {

/// N numbers with a comma or an x between them.
template <std::size_t N>
std::array<double, N> numbers(const std::string& option, const std::string& text) {
  std::array<double, N> values{};
  const char* at = text.data();
  const char* const end = at + text.size();
  for (std::size_t i = 0; i < N; ++i) {
    const auto [next, error] = std::from_chars(at, end, values[i]);
    const bool separated = i + 1 < N ? next != end && (*next == ',' || *next == 'x') : next == end;
    if (error != std::errc() || !std::isfinite(values[i]) || !separated)
      throw UsageError(option + " wants " + std::to_string(N) + " numbers, not \"" + text + "\"");
    at = next + (i + 1 < N);
  }
  return values;
}

/// An option of N numbers, which `take` gets.
template <std::size_t N, class Take>
void add_numbers(CLI::App& command, const std::string& option, const char* form, const char* summary,
                 const Take& take) {
  command
      .add_option_function<std::string>(
          option, [=](const std::string& text) { take(numbers<N>(option, text)); }, summary)
      ->type_name(form);
}

/// The size of a picture. `given` is called when there is one.
template <class Given>
void add_size(CLI::App& command, CSize& size, const Given& given) {
  add_numbers<2>(command, "--size", "WxH", "size in pixels, 16 to 16000 each way", [&size, given](const auto& v) {
    if (std::min(v[0], v[1]) < 16 || std::max(v[0], v[1]) > 16000)
      throw UsageError("--size is 16 to 16000 pixels each way");
    size = CSize(static_cast<int>(v[0]), static_cast<int>(v[1]));
    given();
  });
}
void add_size(CLI::App& command, CSize& size) {
  add_size(command, size, [] {});
}

CLI::Option* add_text(CLI::App& command, const char* name, std::string& value, const char* form, const char* summary) {
  return command.add_option(name, value, summary)->type_name(form);
}

CLI::Option* add_picture(CLI::App& command, std::string& path) {
  static const std::string summary = "a file that ends in " + qvapps::picture_endings();
  return add_text(command, "-o,--out", path, "PICTURE", summary.c_str());
}

void define(CLI::App& command, DemoRequest& request) {
  add_text(command, "--out", request.directory, "DIR", "where to, made when it is not there")->required();
  add_text(command, "--samples", request.samples, "DIR", "data of the sheets; the program's own where none is named");
}

void add_encoding(CLI::App& command, std::optional<qv::CodePage>& page, const char* summary) {
  command
      .add_option_function<std::string>(
          "--encoding",
          [&page](const std::string& name) {
            page = qv::code_page_named(name);
            if (!page) throw UsageError("--encoding \"" + name + "\" is not known");
          },
          summary)
      ->type_name("NAME");
}

/// What is read of a drawing, and how.
void add_import(CLI::App& command, qv::ImportOptions& options) {
  add_text(command, "--layout", options.layout, "NAME", "a sheet of the drawing; model space where none is named");
  add_encoding(command, options.encoding, "the code page of its texts, where the file tells none or the wrong one");
}

void define(CLI::App& command, ConvertRequest& request) {
  add_text(command, "IN.dxf", request.drawing, "", "a drawing of any release, text or binary")->required();
  add_text(command, "-o,--out", request.out, "OUT.dxf", "the drawing in the flat form")->required();
  add_import(command, request.import);
  command
      .add_option("--tolerance", request.import.tolerance, "how far polylines lie off curves, as a share of their size")
      ->check(CLI::Range(1e-6, 0.1))
      ->type_name("T");
  static const std::map<std::string, qv::Unit> kUnits = {
      {"none", qv::Unit::None},    {"mm", qv::Unit::Millimetre}, {"cm", qv::Unit::Centimetre}, {"m", qv::Unit::Metre},
      {"km", qv::Unit::Kilometre}, {"in", qv::Unit::Inch},       {"ft", qv::Unit::Foot}};
  command
      .add_option_function<std::string>(
          "--unit",
          [&request](const std::string& name) {
            request.import.unit = kUnits.at(name);
            request.import.guessUnit = request.unitGiven = true;
          },
          "what lengths are in; mm, where the drawing says its own")
      ->check(CLI::IsMember(kUnits));
  command.add_flag("--explode", request.import.explode, "block references become the entities of their blocks");
  command.add_flag("--portable", request.portable,
                   "write signs of the fonts as %%130 and its kin, and a header with the code page");
}

void add_background(CLI::App& command, PictureOptions& options) {
  command
      .add_option_function<std::string>(
          "--background", [&options](const std::string& name) { options.white = name == "white"; },
          "white (where none is given) or black")
      ->check(CLI::IsMember({"white", "black"}));
}

void define(CLI::App& command, RenderRequest& request) {
  add_text(command, "IN.dxf", request.drawing, "", "the drawing")->required();
  add_import(command, request.import);
  add_picture(command, request.picture)->required();
  PictureOptions& options = request.options;
  add_size(command, options.size, [&options] { options.fixedSize = true; });
  add_numbers<4>(command, "--window", "X1,Y1,X2,Y2", "what to show, in drawing units", [&options](const auto& v) {
    const auto f = [](double d) { return static_cast<float>(d); };
    options.window = CFRect(f(v[0]), f(v[1]), f(v[2]), f(v[3]));
    if (!(options.window->Width() > 0) || !(options.window->Height() > 0)) throw UsageError("--window is empty");
  });
  add_numbers<2>(command, "--view", "A,B", "show it projected, for view angles in degrees", [&options](const auto& v) {
    options.projected = true;
    options.viewA = static_cast<float>(v[0] * std::numbers::pi / 180);
    options.viewB = static_cast<float>(v[1] * std::numbers::pi / 180);
  });
  add_background(command, options);
}

/// "1:50", "2:1" or "fit".
std::optional<double> scale_of(const std::string& text) {
  if (text == "fit") return std::nullopt;
  const std::optional<double> scale = qvapps::scale_of(text);
  if (!scale) throw UsageError("--scale is 1:50, 2:1 or fit, not \"" + text + "\"");
  return scale;
}

void add_paper(CLI::App& command, qv::PlotOptions& options) {
  using Orientation = qv::PlotOptions::Orientation;
  command
      .add_option_function<std::string>(
          "--paper",
          [&options](const std::string& name) {
            options.paper = qv::paper_named(name);
            if (!options.paper) throw UsageError("--paper is A4 to A0, A3+1/2 and its kin, or WxH in mm");
          },
          "A4 to A0, a lengthened format as A3+1/2, or WxH in mm; a sheet's own, else A3")
      ->type_name("NAME");
  command.add_flag_callback(
      "--landscape", [&options] { options.orientation = Orientation::Landscape; },
      "the paper lies, whatever the drawing does");
  command.add_flag_callback(
      "--portrait", [&options] { options.orientation = Orientation::Portrait; }, "the paper stands");
  command
      .add_option_function<std::string>(
          "--scale", [&options](const std::string& text) { options.scale = scale_of(text); },
          "1:50, or fit; a sheet's own, else fit")
      ->type_name("1:N");
  command.add_option("--margin", options.margin, "free at each edge, in mm, by what is fitted")
      ->check(CLI::Range(0, 1000))
      ->type_name("MM");
  add_numbers<2>(command, "--offset", "X,Y", "where the lower left corner lies on the paper, in mm; else centred",
                 [&options](const auto& v) {
                   options.offset = qv::PlotPoint{v[0], v[1]};
                 });
  add_numbers<4>(command, "--window", "X1,Y1,X2,Y2", "what to plot, in drawing units", [&options](const auto& v) {
    options.window = qv::DrawingRect{v[0], v[1], v[2], v[3]};
    if (!(v[2] > v[0]) || !(v[3] > v[1])) throw UsageError("--window is empty");
  });
  command.add_flag("--whole", options.whole, "all on one page; else each sheet frame in the drawing is a page");
}

void add_pens(CLI::App& command, PlotRequest& request) {
  add_text(command, "--pens", request.pens, "TABLE",
           "a file of pens (text or CTB), or one of object, mono, \"GB b=1.4\", \"GB b=1.0\", \"GB b=0.7\", "
           "\"GB b=0.5\"; \"GB b=0.7\" where none is given");
  CLI::Option_group& group = *command.add_option_group("colours");
  group.add_flag("--color", request.colors, "in the colours of the drawing and the pens; else black");
  group.add_flag("--grey", request.grey, "in greys");
  group.add_flag_callback(
      "--mono", [&request] { request.colors = request.grey = false; }, "all black");
  group.require_option(0, 1);
  command.add_flag("--scale-pens", request.options.scalePens, "a sheet that is plotted smaller has thinner pens, too");
}

void define(CLI::App& command, PlotRequest& request) {
  command.add_option("IN.dxf", request.drawings, "the drawings; all of them become one PDF")->required()->type_name("");
  add_text(command, "-o,--out", request.out, "OUT", "a file that ends in .pdf, .svg or .png")->required();
  add_import(command, request.import);
  add_paper(command, request.options);
  add_pens(command, request);
  qv::PlotOptions& options = request.options;
  add_text(command, "--title", options.title, "TEXT",
           "the title of the PDF; the first drawing's name where none is given");
  command.add_option("--dpi", options.dpi, "dots an inch of a .png, 300 where none is given")
      ->check(CLI::Range(30, 2400))
      ->type_name("N");
  command.add_flag("--smooth", options.smooth, "a .png is anti-aliased");
  command.add_flag("--text", options.readable, "an .svg has its texts as invisible text, too");
  command.add_flag("--dated", options.dated, "a .pdf says when it was made");
}

void define(CLI::App& command, InfoRequest& request) {
  add_text(command, "IN.dxf", request.drawing, "", "the drawing")->required();
  add_import(command, request.import);
  command.add_flag("--json", request.json, "as JSON");
}

void define(CLI::App& command, DiffRequest& request) {
  add_text(command, "OLD.dxf", request.before, "", "the drawing as it was")->required();
  add_text(command, "NEW.dxf", request.after, "", "the drawing as it is")->required();
  add_text(command, "-o,--out", request.out, "OUT",
           "both over each other: a picture, or a file that ends in .dxf or .pdf");
  command.add_flag("--json", request.json, "tell the differences as JSON");
  command.add_option("--tolerance", request.tolerance, "how far coordinates may differ, in drawing units")
      ->check(CLI::Range(1e-6, 1e6))
      ->type_name("T");
  add_size(command, request.options.size, [&request] { request.options.fixedSize = true; });
  add_background(command, request.options);
  add_import(command, request.import);
}

void define(CLI::App& command, SlideRequest& request) {
  add_text(command, "SLIDE", request.slide, "", "IN.sld, or LIBRARY.NAME for a slide of a library")->required();
  add_text(command, "-o,--out", request.out, "OUT", "a picture, or a file that ends in .dxf or .scr")->required();
  add_size(command, request.size);
}

void define(CLI::App& command, SlidesRequest& request) {
  add_text(command, "IN.slb", request.library, "", "the library")->required();
  add_picture(command, request.picture);
  add_size(command, request.size);
  add_text(command, "--extract", request.directory, "DIR", "where to write each slide as a file");
}

void define(CLI::App& command, FontsRequest& request) {
  add_text(command, "FONT.shx", request.font, "", "a shape file of any kind; described where nothing else is asked")
      ->required();
  add_text(command, "-o,--out", request.out, "OUT", "the font made plain (.shx), or a picture of all its shapes");
  command.add_flag("--bigfont", request.big, "of a Unifont the Chinese characters; else those of single bytes");
  add_encoding(command, request.page, "the code page of a big font's codes, or of a Unifont's single bytes");
}

void define(CLI::App& command, DatabaseRequest& request) {
  add_text(command, "IN", request.database, "", "the database")->required();
  add_text(command, "SEGMENT", request.segment, "", "list its items");
  add_text(command, "KEY", request.key, "", "show the value of this item");
  command.add_flag("--json", request.json, "as JSON");
}

void define(CLI::App& command, MaterialsRequest& request) {
  add_text(command, "--file", request.file, "UserOpt.dat", "the file of user-defined grades");
}

void add_value(CLI::App& command, int& value) {
  command.add_option("--value", value, "which of the field's values")->check(CLI::Range(0, 4))->type_name("K");
}

void define(CLI::App& command, ContourRequest& request) {
  add_text(command, "FIELD", request.field, "", "the field")->required();
  add_picture(command, request.picture)->required();
  add_value(command, request.value);
  add_size(command, request.size);
}

void define(CLI::App& command, ValueRequest& request) {
  add_text(command, "FIELD", request.field, "", "the field")->required();
  command.add_option("X", request.x, "in metres")->required()->type_name("");
  command.add_option("Y", request.y, "in metres")->required()->type_name("");
  add_value(command, request.value);
}

template <class Request>
CLI::App& add_request(CLI::App& program, const char* name, const char* summary,
                      const std::shared_ptr<Request>& request) {
  CLI::App* const command = program.add_subcommand(name, summary);
  command->fallthrough();  // the program's options may stand behind the command
  define(*command, *request);
  return *command;
}

template <class Request>
void add_command(CLI::App& program, const char* name, const char* summary, void (*run)(const Request&)) {
  const auto request = std::make_shared<Request>();
  add_request(program, name, summary, request).callback([request, run] { run(*request); });
}

/// `answer` becomes the exit code of a command that answers a question.
void add_commands(CLI::App& program, int& answer) {
  add_command(program, "demo", "draw the sample drawings into a directory", run_demo);
  add_command(program, "convert", "make a flat drawing, which old programs open, of any drawing", run_convert);
  add_command(program, "render", "show a drawing, or a window of it, as a picture", run_render);
  add_command(program, "plot", "plot drawings to scale, with pens, as PDF, SVG or PNG", run_plot);
  add_command(program, "info", "tell a drawing's tables, entities and extent", run_info);
  const auto diff = std::make_shared<DiffRequest>();
  add_request(program, "diff", "tell and draw what differs between two drawings; exit code 0: nothing, 1: something",
              diff)
      .callback([diff, &answer] { answer = run_diff(*diff); });
  add_command(program, "slide", "show or convert a slide, from its file or a library", run_slide);
  add_command(program, "slides", "list a slide library, show all its slides, or extract them", run_slides);
  add_command(program, "fonts", "tell what a shape font is, show its shapes, or make it plain", run_fonts);
  add_command(program, "db", "list a database's segments or a segment's items, or show an item's value", run_db);
  add_command(program, "materials", "show the concrete and reinforcement grades, with the user's own", run_materials);
  add_command(program, "contour", "show a field as a colour contour with its legend", run_contour);
  add_command(program, "value", "tell a field's value at a point", run_value);
  program.add_subcommand("help", "tell the commands")->callback([&program] {
    // The program's `help` would give the page of the command that was called.
    const auto page = program.get_formatter()->make_help(&program, program.get_name(), CLI::AppFormatMode::Normal);
    std::fputs(page.c_str(), stdout);
  });
}

int complain(const CLI::App& program, const char* message, bool usage) {
  std::fprintf(stderr, "qvdraw: %s\n", message);
  const auto commands = program.get_subcommands();
  if (!usage) return !commands.empty() && commands[0]->get_name() == "diff" ? 2 : 1;
  std::fprintf(stderr, "see qvdraw %s--help\n", commands.empty() ? "" : (commands[0]->get_name() + ' ').c_str());
  return 2;
}

}  // namespace

void define_command_line(CLI::App& program, Call& call) {
  program.name("qvdraw");
  program.description("construction drawings from the command line");
  program.set_version_flag("--version", "qvdraw " QVTOOLS_VERSION, "show the version");
  program.allow_windows_style_options(false);  // what begins with a slash is a path
  program.require_subcommand(0, 1);
  add_commands(program, call.answer);
  add_text(program, "--font", call.fonts, "TXT.shx[,BIG.shx]",
           "shape fonts to draw texts with; else those that the first drawing names, in the folder QVTOOLS_FONTS, or "
           "the free ones");
}

int run_command_line(int argc, char** argv, const std::function<void(const Call& call)>& prepare) {
  CLI::App program;
  Call call;
  define_command_line(program, call);
  // Runs before the command does.
  program.parse_complete_callback([&] {
    if (program.get_subcommands().empty()) throw UsageError("a command is missing");
    prepare(call);
  });
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& asked) {
    return program.exit(asked);
  } catch (const CLI::ParseError& error) {
    return complain(program, error.what(), true);
  } catch (const UsageError& error) {
    return complain(program, error.what(), true);
  } catch (const std::exception& error) {
    return complain(program, error.what(), false);
  }
  return call.answer;
}

}  // namespace qvdraw
