#pragma once

#include <string>

namespace qvapps {

/// What can be wrong with a file that does not load as a drawing.
enum class Unreadable { Missing, Directory, Device, NotOpened, NoDrawing };

/// Why a file that is not taken for a drawing is not.
Unreadable diagnose(const std::string& path);

}  // namespace qvapps
