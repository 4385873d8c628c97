#include <chrono>
#include <optional>

#include "qvtools/plot/internal/checked_canvas.h"
#include "qvtools/plot/internal/pdf_marks.h"

namespace qv::detail {
namespace {

/// The rectangle around marks.
struct Box {
  PathRect rect;
  bool empty = true;

  void add(const PathRect& r, double around) {
    const PathRect wide{r.left - around, r.bottom - around, r.right + around, r.top + around};
    if (empty) rect = wide;
    empty = false;
    rect.left = std::min(rect.left, wide.left);
    rect.bottom = std::min(rect.bottom, wide.bottom);
    rect.right = std::max(rect.right, wide.right);
    rect.top = std::max(rect.top, wide.top);
  }
};

/// A figure that is kept: its marks are compressed in memory until no page is open in the file.
struct Figure {
  int object;
  std::string entries;  // of its dictionary
  StringSink packed;
};

struct WrittenPage {
  int object;
  std::string file;
  std::string sheet;
};

/// An item of the outline; items name each other by their indices, and 0, the root, stands for none.
struct OutlineItem {
  int object;
  std::size_t parent;
  const WrittenPage* page;
  const std::string* title;
  std::size_t next = 0;
  std::size_t previous = 0;
  std::size_t first = 0;
  std::size_t last = 0;
  int count = 0;
};

/// YYYYMMDDHHMMSS, at Greenwich.
std::string present_time() {
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  const auto today = std::chrono::floor<std::chrono::days>(now);
  const std::chrono::year_month_day date(today);
  const std::chrono::hh_mm_ss time(now - today);
  const std::int64_t day = int{date.year()} * 10000 + unsigned{date.month()} * 100 + unsigned{date.day()};
  return std::to_string((day * 100 + time.hours().count()) * 10000 + time.minutes().count() * 100 +
                        time.seconds().count());
}

class PdfCanvas final : public CheckedCanvas {
 public:
  PdfCanvas(const std::string& path, const CanvasOptions& options)
      : file_(path), title_(options.title), dated_(options.dated) {
    catalog_ = file_.reserve();
    pages_ = file_.reserve();
    info_ = file_.reserve();
  }
  bool is_open() const { return file_.is_open(); }
  bool keeps_figures() const override { return true; }

 private:
  // A figure's marks, on their way through the compression.
  struct OpenFigure {
    explicit OpenFigure(FoundFont& font) : deflater(packed), marks(deflater, font) {}
    StringSink packed;
    Box box;
    Deflater deflater;
    PdfMarks marks;
  };

  PdfMarks& marks() { return open_figure_ ? open_figure_->marks : *page_; }

  void open_page(const Page& page) override {
    size_ = page;
    content_ = file_.reserve();
    page_.emplace(file_.begin_stream(content_), font_);
    page_->scale_page();
    page_->set_layer(layer_);
  }
  void close_page() override {
    page_->end();
    file_.end_stream();
    write_figures();
    const int object = file_.reserve();
    file_.begin(object);
    file_.put("<</Type/Page/Parent ");
    file_.put_reference(pages_);
    constexpr double kPointsPerMm = 72 / 25.4;
    const std::string box = "[0 0 " + numbers<5>({size_.width * kPointsPerMm, size_.height * kPointsPerMm}) + ']';
    for (const char* name : {"/MediaBox", "/CropBox", "/TrimBox"}) file_.put(name + box);
    file_.put("/Contents ");
    file_.put_reference(content_);
    file_.put(resources(*page_));
    file_.put(">>");
    file_.end();
    written_.push_back({object, std::move(size_.file), std::move(size_.sheet)});
    page_.reset();
  }

  void new_layer(const PlotLayer& layer) override {
    layers_.push_back(layer);
    layer_objects_.push_back(file_.reserve());
  }
  void choose_layer(int layer) override {
    if (open_figure_) return open_figure_->marks.set_layer(layer);
    layer_ = layer;
    if (page_) page_->set_layer(layer);
  }

  void draw_stroke(const Path& path, const Stroke& stroke) override {
    marks().stroke(path, stroke);
    // A mitre reaches out by ten half widths at most.
    if (open_figure_)
      open_figure_->box.add(bounds(path), stroke.width * (stroke.joins == Stroke::Joins::Mitred ? 5 : 0.5));
  }
  void draw_fill(const Path& path, Ink ink) override {
    marks().fill(path, ink);
    if (open_figure_) open_figure_->box.add(bounds(path), 0);
  }
  void draw_text(const FoundText& text) override {
    marks().found_text(text);
    const PathRect at{text.at.x, text.at.y, text.at.x, text.at.y};
    if (open_figure_) open_figure_->box.add(at, std::hypot(text.height, text.advance));
  }

  void open_figure() override { open_figure_.emplace(font_); }
  void close_figure() override {
    OpenFigure& open = *open_figure_;
    open.marks.end();
    open.deflater.finish();
    // Rounding moves a mark by a hundredth at most.
    const PathRect& r = open.box.rect;
    const std::string entries = "/Type/XObject/Subtype/Form/BBox[" +
                                numbers<2>({r.left - 0.02, r.bottom - 0.02, r.right + 0.02, r.top + 0.02}) + ']';
    boxes_.push_back(open.box);
    figure_objects_.push_back(file_.reserve());
    waiting_.push_back({figure_objects_.back(), entries + resources(open.marks), std::move(open.packed)});
    open_figure_.reset();
    if (!page_) write_figures();
  }
  void draw_figure(int figure, PathPoint by) override {
    const Box& box = boxes_[static_cast<std::size_t>(figure)];
    if (box.empty) return;
    marks().place(figure, by);
    const PathRect& r = box.rect;
    if (open_figure_) open_figure_->box.add({r.left + by.x, r.bottom + by.y, r.right + by.x, r.top + by.y}, 0.02);
  }
  void write_figures() {
    for (const Figure& figure : waiting_) file_.packed_stream(figure.object, figure.entries, figure.packed.text);
    waiting_.clear();
  }

  template <int decimals>
  static std::string numbers(std::initializer_list<double> values) {
    StringSink sink;
    TextWriter text(sink);
    for (const double value : values) {
      text.real<decimals>(value);
      text.put(' ');
    }
    text.flush();
    return std::move(sink.text);
  }
  static std::string reference(int object) { return std::to_string(object) + " 0 R"; }

  std::string resources(const PdfMarks& marks) {
    const auto named = [](const char* kind, char letter, const std::set<int>& used, const std::vector<int>& objects) {
      std::string text;
      if (used.empty()) return text;
      text = kind;
      for (const int i : used) {
        text += std::string("/") + letter + std::to_string(i) + ' ' + reference(objects[static_cast<std::size_t>(i)]);
      }
      return text + ">>";
    };
    std::string text = "/Resources<<";
    if (marks.has_text()) text += "/Font<</T " + reference(font_.object(file_)) + ">>";
    text += named("/XObject<<", 'F', marks.figures(), figure_objects_);
    text += named("/Properties<<", 'L', marks.layers(), layer_objects_);
    return text + ">>";
  }

  bool write_file() override {
    if (written_.empty()) return false;
    if (font_.used()) font_.write(file_);
    write_pages();
    write_layers();
    const int outline = written_.size() > 1 ? write_outline() : 0;
    write_info();
    file_.begin(catalog_);
    file_.put("<</Type/Catalog/Pages ");
    file_.put_reference(pages_);
    if (outline != 0) file_.put("/PageMode/UseOutlines/Outlines " + reference(outline));
    if (!title_.empty()) file_.put("/ViewerPreferences<</DisplayDocTitle true>>");
    if (!layers_.empty()) file_.put(layer_settings());
    file_.put(">>");
    file_.end();
    return file_.finish(catalog_, info_);
  }
  void write_pages() {
    file_.begin(pages_);
    file_.put("<</Type/Pages/Count " + std::to_string(written_.size()) + "/Kids[");
    for (const WrittenPage& page : written_) file_.put(reference(page.object) + ' ');
    file_.put("]>>");
    file_.end();
  }
  void write_layers() {
    for (std::size_t i = 0; i < layers_.size(); ++i) {
      file_.begin(layer_objects_[i]);
      file_.put("<</Type/OCG/Name ");
      file_.put_text(layers_[i].name);
      if (!layers_[i].plotted) file_.put("/Usage<</Print<</PrintState/OFF>>>>");
      file_.put(">>");
      file_.end();
    }
  }
  // Layers that are not plotted are off, and stay off in print when they are turned on.
  std::string layer_settings() const {
    std::string all, off;
    for (std::size_t i = 0; i < layers_.size(); ++i) {
      const std::string one = reference(layer_objects_[i]) + ' ';
      all += one;
      if (!layers_[i].plotted) off += one;
    }
    std::string text = "/OCProperties<</OCGs[" + all + "]/D<</Order[" + all + ']';
    if (!off.empty()) text += "/OFF[" + off + "]/AS[<</Event/Print/Category[/Print]/OCGs[" + off + "]>>]";
    return text + ">>>>";
  }

  /// Files, each with its sheets where they have names.
  int write_outline() {
    std::vector<OutlineItem> items{{file_.reserve(), 0, nullptr, nullptr}};
    const auto append = [&](std::size_t parent, const WrittenPage& page, const std::string& title) {
      OutlineItem item{file_.reserve(), parent, &page, &title};
      const std::size_t here = items.size();
      item.previous = items[parent].last;
      (item.previous == 0 ? items[parent].first : items[item.previous].next) = here;
      items[parent].last = here;
      ++items[parent].count;
      items.push_back(item);
      return here;
    };
    for (std::size_t i = 0; i < written_.size();) {
      const std::string& name = written_[i].file;
      const std::size_t file = append(0, written_[i], name);
      for (; i < written_.size() && written_[i].file == name; ++i) {
        if (!written_[i].sheet.empty()) append(file, written_[i], written_[i].sheet);
      }
    }
    for (const OutlineItem& item : items) {
      file_.begin(item.object);
      file_.put(item.page ? "<</Title " : "<</Type/Outlines");
      if (item.page) {
        file_.put_text(*item.title);
        file_.put("/Dest[" + reference(item.page->object) + "/Fit]/Parent " + reference(items[item.parent].object));
      }
      const auto link = [&](const char* key, std::size_t other) {
        if (other != 0) file_.put(key + reference(items[other].object));
      };
      link("/Prev ", item.previous);
      link("/Next ", item.next);
      link("/First ", item.first);
      link("/Last ", item.last);
      // All items are unfolded: the root counts them all.
      const int count = item.page ? item.count : static_cast<int>(items.size()) - 1;
      if (count != 0) file_.put("/Count " + std::to_string(count));
      file_.put(">>");
      file_.end();
    }
    return items[0].object;
  }
  void write_info() {
    file_.begin(info_);
    file_.put("<</Producer(qvtools)");
    if (!title_.empty()) {
      file_.put("/Title ");
      file_.put_text(title_);
    }
    if (dated_) {
      file_.put("/CreationDate(D:" + present_time() + "Z)");
    }
    file_.put(">>");
    file_.end();
  }

  PdfFile file_;
  std::string title_;
  bool dated_;
  int catalog_;
  int pages_;
  int info_;
  FoundFont font_;
  std::vector<PlotLayer> layers_;
  std::vector<int> layer_objects_;
  int layer_ = -1;  // of the page

  Page size_{};
  int content_ = 0;
  std::optional<PdfMarks> page_;
  std::vector<WrittenPage> written_;

  std::optional<OpenFigure> open_figure_;
  std::vector<Figure> waiting_;
  std::vector<int> figure_objects_;
  std::vector<Box> boxes_;
};

}  // namespace

std::unique_ptr<Canvas> pdf_canvas(const std::string& path, const CanvasOptions& options) {
  return made_canvas<PdfCanvas>(path, options);
}

}  // namespace qv::detail
