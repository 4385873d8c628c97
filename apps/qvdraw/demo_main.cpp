/// qvdraw_demo DIR: `qvdraw demo` as a program of its own, which is built without the other commands (scripts/demo).
/// Exit codes: 0 done; 1 failed, with one line on standard error; 2 the call's words are off.

#include <cstdio>
#include <exception>

#include "commands.h"
#include "common/fonts.h"
#include "common/system.h"

int main(int argc, char** argv) {
  const qvapps::System system(argc, argv);
  if (argc != 2) {
    std::fputs("usage: qvdraw_demo DIR\n", stderr);
    return 2;
  }
  qvapps::load_fonts("qvdraw_demo", system.program_directory());
  try {
    qvdraw::run_demo({argv[1], ""});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "qvdraw_demo: %s\n", error.what());
    return 1;
  }
  return 0;
}
