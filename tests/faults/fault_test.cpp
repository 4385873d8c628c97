// Lets everything that can go wrong go wrong, once and for good, at each of its places: allocations, files and the
// process itself. After each: the documented result, an object that can be used, the old file or the new, nothing
// leaked.
//
// fault_test [--brief] [NAME…]: the rows of these names, else all; brief for every test run, with fewer places of each.

#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>

#include "faults/injection.h"
#include "faults/scenario.h"

/// Keeps what a coverage build has counted, which _exit would lose.
extern "C" void __gcov_dump() __attribute__((weak));

namespace faults {
namespace {

[[noreturn]] void leave() {
  if (__gcov_dump) __gcov_dump();
  _exit(0);
}

/// What is said of a run; all but the first two are faults of the library.
enum Verdict { Succeeded, Failed, Crash, Hang, WrongSuccess, NotKept, Unusable, Leak, OpenFile, LeftFile, kVerdicts };
constexpr const char* kVerdictNames[] = {"success",  "told",     "CRASH", "HANG", "WRONG SUCCESS",
                                         "NOT KEPT", "UNUSABLE", "LEAK",  "OPEN", "FILE LEFT"};

struct Outcome {
  Verdict verdict;
  bool struck;
};

std::set<std::string> files_here() {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(".")) names.insert(entry.path().filename());
  return names;
}

/// What a scenario finds and makes without faults, and the files that are there then.
struct Expected {
  std::string before;
  std::string after;
  std::set<std::string> files;
};

Expected expected_of(const Scenario& scenario) {
  Expected expected;
  Case made = scenario.make();
  made.prepare();
  expected.before = made.look();
  if (!made.act()) std::printf("%s: fails without faults\n", scenario.name);
  expected.after = made.look();
  expected.files = files_here();
  return expected;
}

/// What is wrong with the answer and what it left; the strings and the objects are gone when it returns.
Verdict judge_answer(const Scenario& scenario, const Expected& expected, const Plan& plan, bool& struck) {
  Case made = scenario.make();
  made.prepare();
  made.look();  // as the expected result was found: looking saves the object
  const int reports = told();
  arm(plan);
  bool success = made.act();
  struck = disarm();
  success = success && told() == reports;
  const std::string found = made.look();
  if (success) return found == expected.after ? Succeeded : WrongSuccess;
  if (scenario.what != Scenario::Parts && found != expected.before) return NotKept;
  made.prepare();
  return made.act() && made.look() == expected.after ? Failed : Unusable;
}

Verdict judge(const Scenario& scenario, const Expected& expected, const Plan& plan, bool& struck) {
  const Balance before = balance();
  const Verdict verdict = judge_answer(scenario, expected, plan, struck);
  const Balance after = balance();
  if (verdict > Failed) return verdict;
  if (files_here() != expected.files) return LeftFile;
  if (after.blocks > before.blocks) return Leak;
  return after.files != before.files ? OpenFile : verdict;
}

/// Removes what a process that crashed has left.
void clear_up(const Expected& expected) {
  for (const std::string& name : files_here())
    if (!expected.files.contains(name)) std::filesystem::remove(name);
}

/// The same in a process of its own, which may crash.
Outcome run(const Scenario& scenario, const Expected& expected, const Plan& plan, Outcome* shared) {
  *shared = {Crash, true};
  const pid_t child = fork();
  if (child == 0) {
    alarm(20);
    if (!std::getenv("QV_FAULTS_TRACE")) std::fclose(stderr);  // of what ends a process
    bool struck = false;
    const Verdict verdict = judge(scenario, expected, plan, struck);
    *shared = {verdict, struck};
    leave();
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM) shared->verdict = Hang;
  if (shared->verdict > Failed) clear_up(expected);
  return *shared;
}

/// A process that is killed: the file is the old one or the new, and the next save leaves nothing else.
Outcome kill(const Scenario& scenario, const Expected& expected, const Plan& plan) {
  const pid_t child = fork();
  if (child == 0) {
    Case made = scenario.make();
    made.prepare();
    arm(plan);
    made.act();
    disarm();
    leave();
  }
  int status = 0;
  waitpid(child, &status, 0);
  const bool struck = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
  if (WIFSIGNALED(status) && !struck) return {Crash, true};
  Case made = scenario.make();
  const std::string found = made.look();
  if (found != expected.before && found != expected.after) return {NotKept, struck};
  made.prepare();
  if (!made.act() || made.look() != expected.after) return {Unusable, struck};
  const bool clean = files_here() == expected.files;
  clear_up(expected);
  return {clean ? Failed : LeftFile, struck};
}

/// A kind of fault: a call and how it is struck.
struct Kind {
  const char* name;
  Plan plan;
  bool saversOnly;
};
constexpr Kind kKinds[] = {
    {"allocation", {Call::Allocate, Blow::Error, ENOMEM, false, 0}, false},
    {"allocations", {Call::Allocate, Blow::Error, ENOMEM, true, 0}, false},
    {"open", {Call::Open, Blow::Error, EACCES, false, 0}, false},
    {"open", {Call::Open, Blow::Error, EIO, true, 0}, false},
    {"read", {Call::Read, Blow::Error, EIO, false, 0}, false},
    {"read", {Call::Read, Blow::Error, EINTR, false, 0}, false},
    {"read", {Call::Read, Blow::Part, 0, true, 0}, false},
    {"write", {Call::Write, Blow::Error, ENOSPC, true, 0}, false},
    {"write", {Call::Write, Blow::Error, EIO, false, 0}, false},
    {"write", {Call::Write, Blow::Error, EINTR, false, 0}, false},
    {"write", {Call::Write, Blow::Part, 0, false, 0}, false},
    {"write", {Call::Write, Blow::Part, 0, true, 0}, false},
    {"flush", {Call::Sync, Blow::Error, EIO, false, 0}, false},
    {"flush", {Call::Sync, Blow::Error, EINTR, false, 0}, false},
    {"rename", {Call::Rename, Blow::Error, ENOSPC, false, 0}, false},
    {"close", {Call::Close, Blow::Error, EIO, false, 0}, false},
    {"close", {Call::Close, Blow::Error, EINTR, false, 0}, false},
    {"kill", {Call::Open, Blow::Kill, 0, false, 0}, true},
    {"kill", {Call::Write, Blow::Kill, 0, false, 0}, true},
    {"kill", {Call::Sync, Blow::Kill, 0, false, 0}, true},
    {"kill", {Call::Rename, Blow::Kill, 0, false, 0}, true},
    {"kill", {Call::Close, Blow::Kill, 0, false, 0}, true},
};

using Counts = long[kVerdicts];

/// Strikes each place in turn, in a brief run the early ones and some of the others.
void strike_all(const Scenario& scenario, const Expected& expected, const Kind& kind, bool brief, Counts& counts,
                Outcome* shared) {
  constexpr long kMany = 8;
  long step = 1;
  for (Plan plan = kind.plan;; plan.at += step) {
    if (plan.at == 0) plan.at = 1;
    const Outcome outcome =
        plan.blow == Blow::Kill ? kill(scenario, expected, plan) : run(scenario, expected, plan, shared);
    if (outcome.struck || outcome.verdict > Failed) ++counts[outcome.verdict];
    if (outcome.verdict > Failed && counts[outcome.verdict] <= 3)
      std::printf("  %s: %s %s %s, number %ld: %s\n", scenario.name, kind.name,
                  plan.blow == Blow::Error  ? strerrorname_np(plan.error)
                  : plan.blow == Blow::Part ? "in part"
                                            : "",
                  plan.forGood ? "for good" : "once", plan.at, kVerdictNames[outcome.verdict]);
    if (!outcome.struck) return;
    if (brief && plan.at >= kMany) step = plan.at / 3;
  }
}

/// Prints a line of the table; returns the number of its faults.
long print_row(const char* name, const Counts& counts) {
  long faults = 0;
  std::printf("%-24s", name);
  for (int v = 0; v < kVerdicts; ++v) {
    if (v > Failed) faults += counts[v];
    if (counts[v] || v <= Failed) std::printf(" %5ld %s", counts[v], kVerdictNames[v]);
  }
  std::puts("");
  std::fflush(stdout);
  return faults;
}

/// One row of the table, whose numbers are added to those of all.
void run_row(const Scenario& scenario, bool brief, Outcome* shared, Counts& all) {
  const Expected expected = expected_of(scenario);
  Counts total = {};
  for (const Kind& kind : kKinds) {
    if (kind.saversOnly && scenario.what != Scenario::Saves) continue;
    Counts counts = {};
    strike_all(scenario, expected, kind, brief, counts, shared);
    for (int v = 0; v < kVerdicts; ++v) total[v] += counts[v];
  }
  print_row(scenario.name, total);
  for (int v = 0; v < kVerdicts; ++v) all[v] += total[v];
}

}  // namespace
}  // namespace faults

int main(int argc, char** argv) {
  using namespace faults;
  bool brief = false;
  std::set<std::string_view> wanted;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--brief") == 0)
      brief = true;
    else
      wanted.insert(argv[i]);
  }
  std::string folder = (std::filesystem::temp_directory_path() / "qvtools-faults-XXXXXX").string();
  if (!mkdtemp(folder.data()) || chdir(folder.c_str()) != 0) return 2;
  auto* const shared = static_cast<Outcome*>(
      ::mmap(nullptr, sizeof(Outcome), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  write_inputs();
  Counts all = {};
  for (const Scenario& scenario : scenarios())
    if (wanted.empty() || wanted.contains(scenario.name)) run_row(scenario, brief, shared, all);
  const long faults = print_row("all", all);
  std::filesystem::remove_all(folder);
  std::printf("%ld faults\n", faults);
  return faults == 0 ? 0 : 1;
}
