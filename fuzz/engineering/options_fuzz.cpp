// Any bytes as the file of user-defined grades: read, asked and saved. What was saved is read and saved the same.

#include <algorithm>
#include <cmath>

#include "../harness.h"
#include "qvtools/engineering/materials.h"
#include "qvtools/services/files.h"

namespace {

using qvfuzz::require;

constexpr char kFile[] = "UserOpt.dat";

/// Whether all numbers of a file's line fit it, so that reading loses none.
bool is_short(float value) {
  return std::fabs(value) < 1e6F;
}

bool is_short(const CUserOpt& options) {
  return std::all_of(options.m_Con, options.m_Con + 5,
                     [](const Con_Prop& c) {
                       const float values[] = {c.fc, c.fcm, c.ft, c.fck, c.fcmk, c.ftk, c.Ec, c.Gc, c.nu, c.alpha};
                       return std::all_of(std::begin(values), std::end(values), [](float v) { return is_short(v); });
                     }) &&
         std::all_of(options.m_Rein, options.m_Rein + 5, [](const Rein_Prop& r) {
           return is_short(r.fy) && is_short(r.fy2) && is_short(r.fyk) && is_short(r.Es);
         });
}

/// What grades are found must have names, and are found by the library's own look-up, which has others too.
void ask(const CUserOpt& options) {
  for (int code = -1; code < 100; ++code) {
    Con_Prop concrete;
    Rein_Prop bar;
    const bool builtIn = code >= 10 && code <= 60 && code % 5 == 0;
    require(get_rc_property(code, &concrete) == (builtIn || options.GetRc(code, &concrete)));
    require(get_rein_property(code, &bar) == ((code >= 1 && code <= 3) || options.GetRein(code, &bar)));
    require(!_HNT(code).IsEmpty() && !_GJ(code).IsEmpty());
  }
}

/// Reads the file and saves it again; returns the saved bytes.
std::string read_and_save(CUserOpt& options) {
  require(options.ReadData() == 1);
  require(options.SaveData() == 1);
  return qvfuzz::scratch().read(kFile);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  G_strExePath = qvfuzz::scratch().prefix().c_str();
  qvfuzz::scratch().write(kFile, {reinterpret_cast<const char*>(data), size});
  CUserOpt options;
  const std::string saved = read_and_save(options);
  ask(options);
  CUserOpt again;
  if (is_short(options)) require(read_and_save(again) == saved);
  return 0;
}
