#include <algorithm>
#include <cstdio>

#include "commands.h"
#include "drawing_file.h"

namespace qvdraw {

namespace {

struct Sign {
  unsigned char byte;
  const char* code;
};

/// The text font's own signs, as other programs have them: grades of steel by their numbers, signs that any font may
/// have by those of Unicode. Behind "^" they look for the letter of a control character.
constexpr Sign kSigns[] = {{'^', "^ "},        {0x7F, "%%d"},      {0x80, "%%p"},      {0x81, "%%c"},
                           {0x82, "%%130"},    {0x83, "%%131"},    {0x85, "%%133"},    {0x8B, "%%139"},
                           {0x8C, "\\U+00B2"}, {0x8D, "\\U+00B3"}, {0x8E, "\\U+2260"}, {0x8F, "\\U+2264"},
                           {0x90, "\\U+2265"}, {0x91, "\\U+2248"}};

std::string with_codes(const char* text) {
  std::string out;
  while (const std::size_t n = qv::char_length(text)) {
    const auto byte = static_cast<unsigned char>(*text);
    // Only bytes from 0xA1 on begin characters of the fonts.
    const bool pair = n == 2 && byte >= 0xA1;
    const Sign* sign = nullptr;
    for (const Sign& known : kSigns)
      if (!pair && known.byte == byte) sign = &known;
    sign ? out.append(sign->code) : out.append(text, pair ? 2 : 1);
    text += pair ? 2 : 1;
  }
  return out;
}

/// Files hold two decimals: nothing for a plan in millimetres, much for a small one in metres.
void tell_lost_decimals(DXF& dxf, const std::string& path) {
  constexpr double kStep = 0.01;
  constexpr double kMuch = 0.001;
  const CFRect r = dxf.GetFRect();
  const double size = static_cast<double>(std::max(r.Width(), r.Height()));
  if (size > 0 && kStep > kMuch * size)
    std::fprintf(stderr, "qvdraw: %s: two decimals are %.2g %% of the drawing's size\n", path.c_str(),
                 100 * kStep / size);
}

/// Gives the texts their signs as codes. Returns how many stay as they are, since a text has no room for the codes.
int make_portable(const CPtrList& list) {
  int kept = 0;
  for_each<ACAD_ENTITY>(list, [&kept](ACAD_ENTITY& entity) {
    if (entity.GetType() != ACAD_TYPE_TEXT) return;
    auto& text = static_cast<ACAD_TEXT&>(entity);
    const std::string coded = with_codes(text.m_szText);
    if (coded.size() < sizeof text.m_szText)
      qv::copy_text(text.m_szText, coded.c_str());
    else
      ++kept;
  });
  return kept;
}

}  // namespace

void run_convert(const ConvertRequest& request) {
  qv::ImportOptions options = request.import;
  if (!request.unitGiven) options.unit = qv::Unit::Millimetre;
  qv::ImportReport report;
  const std::unique_ptr<DXF> dxf = load_drawing(request.drawing, options, report);
  tell_lost_decimals(*dxf, request.drawing);
  if (request.portable) {
    dxf->m_bCodePageHeader = 1;
    int kept = make_portable(dxf->m_EntityList);
    for_each<ACAD_BLOCK>(dxf->m_BlockList, [&](ACAD_BLOCK& block) { kept += make_portable(block.m_EntityList); });
    if (kept > 0)
      std::fprintf(stderr, "qvdraw: %s: texts that keep the fonts' own signs, since their codes would not fit: %d\n",
                   request.drawing.c_str(), kept);
  }
  if (!dxf->Write_MemDxf_To_File(request.out.c_str())) throw std::runtime_error(request.out + ": cannot be written");
}

}  // namespace qvdraw
