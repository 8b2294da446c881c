#pragma once

// The words that a running game and the editor's panel say to one another. The editor reads the same
// words from addons/quillstead/runtime/debugger_messages.gd: what is changed here is changed there.

namespace debugger_messages {

// From the game, each an Array with the machine's path as its first field.
// Then: the new state's name, the previous state's name or an empty text.
constexpr const char *STATE = "quillstead:state";
// Then: the name of the state it stopped in.
constexpr const char *PAUSED = "quillstead:paused";
// Then: the event's name, its data as text, whether it is a global event.
constexpr const char *EVENTS = "quillstead:events";
// Then: a Dictionary of variable name to value, both as text.
constexpr const char *VALUES = "quillstead:values";
// Then: an Array of rows of state name, action index, "off", "waiting", "running" or "done", the action's own words.
constexpr const char *ACTIONS = "quillstead:actions";

// From the editor, through this capture. The first field is a machine's path.
constexpr const char *CONTROL = "quillstead_control";
// Here a part of the path is enough, and an empty text ends the watch.
constexpr const char *WATCH = "watch";
// Then: whether to pause, which may be left out.
constexpr const char *PAUSE = "pause";
constexpr const char *STEP = "step";

} // namespace debugger_messages
