#include "qvtools/engineering/materials.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <mutex>
#include <string>

#include "qvtools/services/captions.h"
#include "qvtools/services/files.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/services/messages.h"
#include "qvtools/services/text_input.h"
#include "qvtools/system/saved_file.h"
#include "qvtools/system/textfile.h"
#include "qvtools/text/numbers.h"

CUserOpt G_UserOpt;
int G_bUserOptRead = 0;

using qv::detail::unless_out_of_memory;

namespace {

constexpr Con_Prop kConcrete[] = {
    {10, 5.0F, 5.5F, 0.65F, 6.7F, 7.5F, 0.9F, 17500, 0, 0.2F, 1e-5F},
    {15, 7.5F, 8.5F, 0.9F, 10.0F, 11.0F, 1.2F, 22000, 0, 0.2F, 1e-5F},
    {20, 10.0F, 11.0F, 1.1F, 13.5F, 15.0F, 1.5F, 25500, 11000, 0.2F, 1e-5F},
    {25, 12.5F, 13.5F, 1.3F, 17.0F, 18.5F, 1.75F, 28000, 12000, 0.2F, 1e-5F},
    {30, 15.0F, 16.5F, 1.5F, 20.0F, 22.0F, 2.0F, 30000, 13000, 0.2F, 1e-5F},
    {35, 17.5F, 19.0F, 1.65F, 23.5F, 26.0F, 2.25F, 31500, 14000, 0.2F, 1e-5F},
    {40, 19.5F, 21.5F, 1.8F, 27.0F, 29.5F, 2.45F, 32500, 15000, 0.2F, 1e-5F},
    {45, 21.5F, 23.5F, 1.9F, 29.5F, 32.5F, 2.6F, 33500, 15500, 0.2F, 1e-5F},
    {50, 23.5F, 26.0F, 2.0F, 32.0F, 35.0F, 2.75F, 34500, 16000, 0.2F, 1e-5F},
    {55, 25.0F, 27.5F, 2.1F, 34.0F, 37.5F, 2.85F, 35500, 16500, 0.2F, 1e-5F},
    {60, 26.5F, 29.0F, 2.2F, 36.0F, 39.5F, 2.95F, 36000, 17000, 0.2F, 1e-5F},
};
constexpr Rein_Prop kReinforcement[] = {
    {1, 210, 210, 235, 210000},
    {2, 310, 310, 335, 200000},
    {3, 340, 340, 370, 200000},
    {4, 500, 400, 540, 200000},
};
constexpr int kDefaultConcrete = 2;       // C20
constexpr int kDefaultReinforcement = 1;  // grade 2
constexpr int kSlots = 5;
constexpr int kLine = 290;

template <class Prop, std::size_t N>
int find(const Prop (&table)[N], int code, Prop* out) {
  const auto found = std::find_if(table, table + N, [code](const Prop& prop) { return prop.code == code; });
  if (found == table + N) return 0;
  *out = *found;
  return 1;
}

std::string options_path() {
  return (G_strExePath + "UserOpt.dat").str();
}

std::FILE* open_options() {
  return unless_out_of_memory([] { return qv::open_text(options_path().c_str(), "rt"); }, nullptr);
}

const CUserOpt& user_options() {
  // The first look-up may tell that the disk failed, and a host may look up again while it shows that.
  static std::recursive_mutex reading;
  const std::atomic_ref<int> isRead(G_bUserOptRead);
  if (!isRead.load(std::memory_order_acquire)) {
    const std::lock_guard guard(reading);
    if (!isRead.load(std::memory_order_relaxed)) G_UserOpt.ReadData();
    isRead.store(1, std::memory_order_release);
  }
  return G_UserOpt;
}

CString numbered(const char* format, int number) {
  return qv::FormattedText<32>(format, number).text;
}

}  // namespace

CUserOpt::CUserOpt() {
  std::fill(std::begin(m_Con), std::end(m_Con), kConcrete[kDefaultConcrete]);
  std::fill(std::begin(m_Rein), std::end(m_Rein), kReinforcement[kDefaultReinforcement]);
}

int CUserOpt::GetRc(int code, Con_Prop* out) const {
  if (code < 65 || code > 85 || code % 5 != 0) return 0;
  *out = m_Con[(code - 65) / 5];
  return 1;
}

int CUserOpt::GetRein(int code, Rein_Prop* out) const {
  if (code < 4 || code > 8) return 0;
  *out = m_Rein[code - 4];
  return 1;
}

int CUserOpt::ReadData() {
  std::FILE* const file = open_options();
  if (!file) return 0;
  CUserOpt read = *this;
  char line[kLine];
  fgets_skip_comment(line, kLine, file);
  for (Con_Prop& c : read.m_Con) {
    fgets_skip_comment(line, kLine, file);
    qv::vsscanf(line, "%*,%*,%.3f,%.3f,%.3f,%.3f,%.3f,%.3f,%.3f,%.3f,%.3f,%.3f\n", &c.fc, &c.fcm, &c.ft, &c.fck,
                &c.fcmk, &c.ftk, &c.Ec, &c.Gc, &c.nu, &c.alpha);
  }
  fgets_skip_comment(line, kLine, file);
  for (Rein_Prop& r : read.m_Rein) {
    fgets_skip_comment(line, kLine, file);
    qv::vsscanf(line, "%*,%*,%.3f,%.3f,%.3f,%.3f\n", &r.fy, &r.fy2, &r.fyk, &r.Es);
  }
  const bool good = !std::ferror(file);
  std::fclose(file);
  if (good) *this = read;
  if (!good) tell_error(301, "Read Error in UserOpt.dat !");
  return good;
}

int CUserOpt::SaveData() const {
  const auto save = [this] {
    std::string text = std::string(qv::captions::kUserConcrete) + "\r\n";
    const auto add_line = [&](const char* name, int slot, std::initializer_list<float> values) {
      text += qv::FormattedText<64>("%d,%s%d", slot, name, -slot);
      for (const float value : values) text += qv::FormattedText<64>(",%.3f", static_cast<double>(value));
      text += "\r\n";
    };
    for (int i = 0; i < kSlots; ++i) {
      const Con_Prop& c = m_Con[i];
      add_line("UC", i + 1, {c.fc, c.fcm, c.ft, c.fck, c.fcmk, c.ftk, c.Ec, c.Gc, c.nu, c.alpha});
    }
    text += std::string(qv::captions::kUserReinforcement) + "\r\n";
    for (int i = 0; i < kSlots; ++i) {
      const Rein_Prop& r = m_Rein[i];
      add_line("UG", i + 1, {r.fy, r.fy2, r.fyk, r.Es});
    }
    return int{qv::save_bytes(options_path().c_str(), text.data(), text.size())};
  };
  return unless_out_of_memory(save, 0);
}

int get_rc_property(int code, Con_Prop* out) {
  return user_options().GetRc(code, out) || find(kConcrete, code, out);
}

int get_rein_property(int code, Rein_Prop* out) {
  // Quirk: user slot 1 hides the built-in grade 4; host programs store the slot's code as 4.
  return user_options().GetRein(code, out) || find(kReinforcement, code, out);
}

CString _HNT(int code) {
  return code >= 65 ? numbered("UC-%d", (code - 60) / 5) : numbered("C%d", code);
}

CString _GJ(int code) {
  return code >= 4 ? numbered("UG-%d", code - 3) : numbered("%d", code);
}
