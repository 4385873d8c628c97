#pragma once

/// Faults at the border of the program: the functions of the C library that take memory and touch files are this
/// program's own, which count calls, keep a balance, and let one call, or all from it on, fail.

namespace faults {

enum class Call { Allocate, Open, Read, Write, Sync, Rename, Close };
inline constexpr int kCalls = 7;

/// What a call does that is struck: it fails with an error, does a part of what was asked, or the process is killed
/// before it.
enum class Blow { Error, Part, Kill };

struct Plan {
  Call call;
  Blow blow;
  int error;     ///< the errno of `Error`
  bool forGood;  ///< all later calls of the kind too
  long at;       ///< the call that is struck first, from 1
};

/// Counts calls from now on and strikes by the plan.
void arm(const Plan& plan);
/// Ends it. Returns whether a call was struck.
bool disarm();

/// What is held: blocks and pages of memory, and open files.
struct Balance {
  long blocks;
  long files;
};
Balance balance();

}  // namespace faults
