#pragma once

// What the settings of the files category that several kinds have look like and say.

#include "settings/hints.hpp"

namespace files {

inline constexpr Hint A_FILE = { PROPERTY_HINT_FILE_PATH, "*" };
inline constexpr const char *ANYWHERE =
		"Let it go anywhere on the computer, such as to a folder that the player chose. Off, it keeps to user://, the game's own "
		"folder, and for reading also to res://, what the game is shipped with.";
inline constexpr const char *FAILED_EVENT = "Sent when it could not be done. It carries the reason. Empty sends nothing.";

} // namespace files
