#pragma once

// How the mouse was before a pause showed it, which outlives the machine that paused and its scene.

namespace mouse_in_pause {

void show();
// As it was before. A game that has changed it meanwhile keeps it as it is.
void put_back();

} // namespace mouse_in_pause
