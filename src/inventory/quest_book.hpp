#pragma once

// Quests, which the addon's scripts declare and keep the book of. Here is how the kinds that are about quests ask them. Whatever
// changes the book may run a game's code.

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/variant/string.hpp>

using namespace godot;

class SCMachineBase;

namespace quest_book {

enum Status { NOT_STARTED, ACTIVE, DONE, FAILED, ABANDONED };

bool is_quest(const Ref<Resource> &quest);
// What a game maker knows it by: its title, else its own name or its file's.
String title_of(const Ref<Resource> &quest);
// How a summary names it: "(pick one)" for none.
String in_line(const Ref<Resource> &quest);
// As a sentence says that it cannot be done any more: "under way", "done already".
String status_in_words(Status status);

void start(SCMachineBase *machine, const Ref<Resource> &quest);
void complete(SCMachineBase *machine, const Ref<Resource> &quest);
void fail(const Ref<Resource> &quest);
void abandon(const Ref<Resource> &quest);
void track(const Ref<Resource> &quest, bool tracked);

Status status_of(const Ref<Resource> &quest);
int64_t step_count(const Ref<Resource> &quest);
// What the player reads of a step; empty for an empty row.
String step_says(const Ref<Resource> &quest, int64_t step);
bool step_done(const Ref<Resource> &quest, int64_t step);
bool step_counts_now(const Ref<Resource> &quest, int64_t step);

} // namespace quest_book
