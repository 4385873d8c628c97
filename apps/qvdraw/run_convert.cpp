#include "commands.h"
#include "drawing_file.h"

namespace qvdraw {

namespace {

struct Sign {
  unsigned char byte;
  const char* code;
};

/// The text font's own signs, as other programs have them: grades of steel by their numbers.
constexpr Sign kSigns[] = {{0x7F, "%%d"},   {0x80, "%%p"},   {0x81, "%%c"},  {0x82, "%%130"},
                           {0x83, "%%131"}, {0x85, "%%133"}, {0x8B, "%%139"}};

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

void make_portable(const CPtrList& list) {
  for_each<ACAD_ENTITY>(list, [](ACAD_ENTITY& entity) {
    if (entity.GetType() != ACAD_TYPE_TEXT) return;
    auto& text = static_cast<ACAD_TEXT&>(entity);
    qv::copy_text(text.m_szText, with_codes(text.m_szText).c_str());
  });
}

}  // namespace

void run_convert(const ConvertRequest& request) {
  qv::ImportOptions options = request.import;
  if (!request.unitGiven) options.unit = qv::Unit::Millimetre;
  qv::ImportReport report;
  const std::unique_ptr<DXF> dxf = load_drawing(request.drawing, options, report);
  if (request.portable) {
    dxf->m_bCodePageHeader = 1;
    make_portable(dxf->m_EntityList);
    for_each<ACAD_BLOCK>(dxf->m_BlockList, [](ACAD_BLOCK& block) { make_portable(block.m_EntityList); });
  }
  if (!dxf->Write_MemDxf_To_File(request.out.c_str())) throw std::runtime_error(request.out + ": cannot be written");
}

}  // namespace qvdraw
