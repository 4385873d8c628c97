/// qvdraw: draws, shows and describes drawings from the command line.
///
/// Exit codes: 0 done; 1 failed, with one line on standard error; 2 the call's words are off. Of `diff`: 0 the same, 1
/// different, 2 failed.

#include "command_line.h"
#include "common/naming_host.h"
#include "common/system.h"
#include "drawing_file.h"

int main(int argc, char** argv) {
  const qvapps::System system(argc, argv);
  qvapps::NamingHost<qv::ConsoleHost> host;
  qv::SetHost(&host);
  return qvdraw::run_command_line(argc, argv, [&](const qvdraw::Call& call) {
    const std::string directory = system.program_directory();
    const qvapps::FontFiles files = qvapps::load_fonts("qvdraw", directory, call.fonts);
    qvdraw::set_lettering({files, call.fonts.empty(), directory});
  });
}
