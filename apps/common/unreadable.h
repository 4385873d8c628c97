#pragma once

#include <string>

namespace qvapps {

/// What can be wrong with a file that does not load as a drawing.
enum class Unreadable { Missing, Directory, NotOpened, Binary, BareCodes, NoEntities };

/// Why a file has no entities that the reader finds.
Unreadable diagnose(const std::string& path);

}  // namespace qvapps
