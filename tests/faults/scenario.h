#pragma once

/// What is done under faults: rows of a table.

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace faults {

/// One use of the library. The harness arms the faults for `act` alone.
struct Case {
  std::function<void()> prepare;      ///< makes the object ready, the first time and again
  std::function<bool()> act;          ///< whether the interface answered with success
  std::function<std::string()> look;  ///< what has come of it: bytes that are the same whenever `act` succeeds
};

struct Scenario {
  enum What {
    Keeps,  ///< a failure leaves everything as it was
    Parts,  ///< a failure may leave a part
    Saves,  ///< the file "out" is replaced by a whole one: the old file or the new, whenever the process is killed
  };
  const char* name;
  What what;
  std::function<Case()> make;
};

/// The table. Files are those of the current folder, which `write_inputs` fills.
const std::vector<Scenario>& scenarios();
void write_inputs();

/// The reports of failures (code 301) so far.
int told();

}  // namespace faults
