#include <map>
#include <optional>

#include "qvtools/plot/internal/checked_canvas.h"
#include "qvtools/plot/internal/path_walk.h"
#include "qvtools/system/saved_file.h"
#include "qvtools/text/code_page.h"

namespace qv::detail {
namespace {

// A path that grows without end is slow to draw and to edit.
constexpr std::int64_t kLongestPath = 250;

// The height of capitals in most fonts, in font sizes.
constexpr double kCapitals = 0.7;

/// Text as XML has it, without the characters that it cannot have.
std::string escaped(std::string_view utf8) {
  std::u32string letters;
  decode_text(CodePage::Utf8, utf8, letters);
  std::string text;
  for (const char32_t c : letters) {
    switch (c) {
      case '&':
        text += "&amp;";
        break;
      case '<':
        text += "&lt;";
        break;
      case '>':
        text += "&gt;";
        break;
      case '"':
        text += "&quot;";
        break;
      default:
        if (c >= 0x20 && (c < 0x7F || c >= 0xA0) && (c & 0xFFFE) != 0xFFFE) append_utf8(c, text);
    }
  }
  return text;
}

/// The marks of one layer. Ordinates run downwards here; coordinates are relative, which is shorter.
class SvgMarks {
 public:
  /// `height`: of the page, in hundredths of a millimetre.
  explicit SvgMarks(int height) : text_(sink_), walk_(*this), height_(height) {}

  void stroke(const Path& path, const Stroke& stroke) {
    if (!open_ || !(stroke == pen_) || walk_.told() - path_from_ > kLongestPath) {
      end_path();
      pen_ = stroke;
      walk_.restart();
      path_from_ = walk_.told();
    }
    // Where two strokes meet, a round join looks as two round ends do.
    walk_.stroke(path, stroke.ends == Stroke::Ends::Round && stroke.joins == Stroke::Joins::Round);
  }
  void fill(const Path& path, Ink ink) {
    end_path();
    walk_.restart();
    filling_ = ink;
    fills_ = true;
    walk_.fill(path);
    end_path();
    fills_ = false;
  }
  void found_text(const FoundText& text) {
    const std::string letters = escaped(text.text);
    if (letters.empty()) return;
    end_path();
    const GridPoint at = on_page(on_grid(text.at));
    attribute<2>("<text x", at.x);
    attribute<2>(" y", at.y);
    attribute<2>(" font-size", std::max(hundredths(text.height / kCapitals), 1));
    if (text.advance > 0) {
      attribute<2>(" textLength", std::max(hundredths(text.advance), 1));
      text_.put(" lengthAdjust=\"spacingAndGlyphs\"");
    }
    if (const std::int64_t degrees = in_parts(-text.angle * (180 / std::numbers::pi), 1000); degrees != 0) {
      text_.put(" transform=\"rotate(");
      text_.number<3>(degrees);
      put_pair(at.x, at.y, true);
      text_.put(")\"");
    }
    text_.put(" xml:space=\"preserve\">");
    text_.put(letters);
    text_.put("</text>\n");
  }
  void place(int figure, PathPoint by) {
    end_path();
    text_.put("<use xlink:href=\"#figure");
    text_.integer(figure);
    attribute<4>("\" x", in_parts(by.x, 10000));
    attribute<4>(" y", std::int64_t{height_} * 100 - in_parts(by.y, 10000));
    text_.put("/>\n");
  }
  /// All of it. Nothing can be added afterwards.
  std::string finished() {
    end_path();
    text_.flush();
    return std::move(sink_.text);
  }

  // What the walk along a path tells.
  void move(GridPoint p) {
    begin_path();
    p = on_page(p);
    if (command_ == '\0') {
      text_.put('M');
      put_pair(p.x, p.y, false);
      command_ = 'M';
    } else {
      relative('m', p);
      command_ = 'l';  // as pairs behind a relative move are taken
    }
    begin_ = now_ = p;
  }
  void line(GridPoint p) { relative('l', on_page(p)); }
  void arc(PathPoint from, const Path::Piece& arc);
  void close() {
    text_.put('z');
    command_ = 'z';
    now_ = begin_;
  }

 private:
  GridPoint on_page(GridPoint p) const { return {p.x, height_ - p.y}; }

  void begin_path() {
    if (open_) return;
    open_ = true;
    command_ = '\0';
    if (fills_) {
      color("<path fill", filling_);
    } else {
      color("<path stroke", pen_.ink);
      attribute<2>(" stroke-width", std::max(hundredths(pen_.width), 1));
      if (pen_.ends == Stroke::Ends::Butt) text_.put(" stroke-linecap=\"butt\"");
      if (pen_.joins == Stroke::Joins::Mitred) text_.put(" stroke-linejoin=\"miter\" stroke-miterlimit=\"10\"");
    }
    text_.put(" d=\"");
  }
  void end_path() {
    if (open_) text_.put("\"/>\n");
    open_ = false;
  }
  template <int decimals>
  void attribute(std::string_view name, std::int64_t value) {
    text_.put(name);
    text_.put("=\"");
    text_.number<decimals>(value);
    text_.put('"');
  }
  void color(std::string_view name, Ink ink) {
    text_.put(name);
    text_.put("=\"#");
    for (const unsigned char part : {ink.red, ink.green, ink.blue}) {
      text_.put("0123456789abcdef"[part >> 4]);
      text_.put("0123456789abcdef"[part & 15]);
    }
    text_.put('"');
  }
  // Two numbers; a sign parts them as well as a blank.
  void put_pair(int x, int y, bool blank) {
    if (blank && x >= 0) text_.put(' ');
    text_.number<2>(x);
    if (y >= 0) text_.put(' ');
    text_.number<2>(y);
  }
  void relative(char command, GridPoint p) {
    const bool again = command == command_ && command != 'm';
    if (!again) text_.put(command);
    put_pair(p.x - now_.x, p.y - now_.y, again);
    command_ = command;
    now_ = p;
  }

  StringSink sink_;
  TextWriter text_;
  PathWalk<SvgMarks> walk_;
  int height_;
  bool open_ = false;  // a path element
  char command_ = '\0';
  GridPoint begin_;  // of the figure
  GridPoint now_;
  Stroke pen_;
  Ink filling_;
  bool fills_ = false;
  std::int64_t path_from_ = 0;
};

void SvgMarks::arc(PathPoint from, const Path::Piece& arc) {
  // In pieces of a quarter at most: where an arc and its chord differ more, two rounded ends and a radius do not fix
  // it.
  const ArcPieces pieces(from, arc, std::numbers::pi / 2);
  const int radius = hundredths(distance(from, arc.center));
  for (int i = 1; i <= pieces.count(); ++i) {
    const GridPoint p = on_page(on_grid(pieces.point(i)));
    if (p == now_) continue;
    if (radius == 0) {
      relative('l', p);
      continue;
    }
    text_.put('a');
    put_pair(radius, radius, false);
    // Ordinates run downwards, so an arc that turns counter-clockwise turns to smaller angles.
    text_.put(arc.sweep > 0 ? " 0 0 0" : " 0 0 1");
    put_pair(p.x - now_.x, p.y - now_.y, true);
    command_ = 'a';
    now_ = p;
  }
}

class SvgCanvas final : public CheckedCanvas {
 public:
  SvgCanvas(const std::string& path, const CanvasOptions& options)
      : file_(path.c_str()), title_(options.title), readable_(options.readable) {}
  bool is_open() const { return file_.is_open(); }
  bool keeps_figures() const override { return true; }

 private:
  /// Marks by layer. A layer is one group: its marks lie together, where the first of them was drawn.
  class Drawing {
   public:
    explicit Drawing(int height) : height_(height) {}
    void choose(int layer) { layer_ = layer; }
    SvgMarks& marks() {
      auto& marks = marks_[layer_];
      if (!marks) {
        marks = std::make_unique<SvgMarks>(height_);
        order_.push_back(layer_);
      }
      return *marks;
    }
    const std::vector<int>& layers() const { return order_; }
    SvgMarks& of(int layer) { return *marks_[layer]; }

   private:
    int height_;
    int layer_ = -1;
    std::map<int, std::unique_ptr<SvgMarks>> marks_;
    std::vector<int> order_;
  };

  SvgMarks& marks() { return open_figure_ ? open_figure_->marks() : page_->marks(); }

  void open_page(const Page& page) override {
    ++pages_;
    size_ = page;
    page_.emplace(hundredths(page.height));
    page_->choose(layer_);
  }
  void close_page() override {}
  void new_layer(const PlotLayer& layer) override { layers_.push_back(layer); }
  void choose_layer(int layer) override {
    if (open_figure_) return open_figure_->choose(layer);
    layer_ = layer;
    if (page_) page_->choose(layer);
  }
  void draw_stroke(const Path& path, const Stroke& stroke) override { marks().stroke(path, stroke); }
  void draw_fill(const Path& path, Ink ink) override { marks().fill(path, ink); }
  void draw_text(const FoundText& text) override {
    if (readable_) marks().found_text(text);
  }
  void open_figure() override { open_figure_.emplace(0); }
  void close_figure() override {
    figures_ += "<g id=\"figure" + std::to_string(figure_count_++) + "\">\n";
    for (const int layer : open_figure_->layers()) {
      if (layer >= 0) figures_ += "<g" + described(layer) + ">\n";
      figures_ += open_figure_->of(layer).finished();
      if (layer >= 0) figures_ += "</g>\n";
    }
    figures_ += "</g>\n";
    open_figure_.reset();
  }
  void draw_figure(int figure, PathPoint by) override { marks().place(figure, by); }

  std::string described(int layer) const {
    const PlotLayer& l = layers_[static_cast<std::size_t>(layer)];
    return " data-layer=\"" + escaped(l.name) + '"' + (l.plotted ? "" : " style=\"display:none\"");
  }
  bool put(std::string_view text) { return file_.write(text.data(), text.size()); }

  bool write_file() override {
    if (pages_ != 1) return false;
    StringSink head;
    TextWriter text(head);
    const auto size = [&text](std::string_view before, double mm) {
      text.put(before);
      text.real<2>(mm);
    };
    text.put(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
        "xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
        "xmlns:inkscape=\"http://www.inkscape.org/namespaces/inkscape\"");
    size(" width=\"", size_.width);
    size("mm\" height=\"", size_.height);
    size("mm\" viewBox=\"0 0 ", size_.width);
    size(" ", size_.height);
    text.put("\" fill=\"none\" stroke-linecap=\"round\" stroke-linejoin=\"round\">\n");
    if (!title_.empty()) text.put("<title>" + escaped(title_) + "</title>\n");
    text.flush();
    put(head.text);
    if (!figures_.empty()) put("<defs>\n" + figures_ + "</defs>\n");
    for (const int layer : page_->layers()) {
      if (layer >= 0) {
        const std::string& name = layers_[static_cast<std::size_t>(layer)].name;
        put("<g id=\"layer" + std::to_string(layer + 1) + "\" inkscape:groupmode=\"layer\" inkscape:label=\"" +
            escaped(name) + '"' + described(layer) + ">\n");
      }
      put(page_->of(layer).finished());
      if (layer >= 0) put("</g>\n");
    }
    return put("</svg>\n") && file_.commit();
  }

  SavedFile file_;
  std::string title_;
  bool readable_;
  std::vector<PlotLayer> layers_;
  int layer_ = -1;  // of the page
  int pages_ = 0;
  Page size_{};
  std::optional<Drawing> page_;
  std::optional<Drawing> open_figure_;
  int figure_count_ = 0;
  std::string figures_;
};

}  // namespace

std::unique_ptr<Canvas> svg_canvas(const std::string& path, const CanvasOptions& options) {
  return made_canvas<SvgCanvas>(path, options);
}

}  // namespace qv::detail
