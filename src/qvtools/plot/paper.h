#pragma once

/// Sizes of paper: A4 to A0 and the lengthened formats of construction drawings.

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace qv {

/// A sheet of paper in millimetres.
struct PaperSize {
  double width = 0;
  double height = 0;

  /// The longer and the shorter side, and the paper lying and standing.
  double longer() const { return width > height ? width : height; }
  double shorter() const { return width > height ? height : width; }
  PaperSize landscape() const { return {longer(), shorter()}; }
  PaperSize portrait() const { return {shorter(), longer()}; }
  bool operator==(const PaperSize&) const = default;
};

/// A format by its name; the sizes are landscape.
struct PaperFormat {
  const char* name;  ///< "A2", or "A2+1/4" where the long side is lengthened by a quarter
  PaperSize size;    ///< landscape, mm
};

/// All formats, the larger before the smaller. Source: GB/T 50001, sizes of sheets, and the lengthened sides that it
/// lists; A4 is lengthened by no one.
std::span<const PaperFormat> paper_formats();

/// The paper of a name, whatever the case of its letters, or of a size "WxH" in mm with decimals, each side 10 to 5000
/// mm. The empty value for anything else.
std::optional<PaperSize> paper_named(std::string_view name);

/// The name of the format of a size, to half a millimetre, lying or standing; "WxH" where it is none.
std::string paper_name(const PaperSize& size);

}  // namespace qv
