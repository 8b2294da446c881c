#pragma once

// What is noted of every body that the move step moves, for whoever asks later: when it last moved, which way, and when it last
// stood on the floor. The tables belong to the addon's move script, which scripts read them from. Also which navigation agent
// stands under a body. A body that is gone leaves nothing behind.

#include <godot_cpp/classes/character_body2d.hpp>
#include <godot_cpp/classes/character_body3d.hpp>
#include <godot_cpp/variant/dictionary.hpp>

using namespace godot;

namespace body_notes {

void note_step(CharacterBody2D *body, int64_t frame);
void note_step(CharacterBody3D *body, int64_t frame);
void note_step(Node *body, int64_t frame);

// The physics frame in which it was last on the floor; a very early one when it never was.
int64_t last_on_floor(const Node *body);
// It has left the floor of its own will, so that it is not thought to have just walked off.
void forget_floor(const Node *body);

// The first NavigationAgent2D or NavigationAgent3D among its children; null for none.
Node *agent_of(const Node *body);

// That there was nothing to flip among its children, until one comes or goes.
bool is_without_pictures(const Node *body);
void note_without_pictures(const Node *body);

// Looks through all of it once for what has gone.
void drop_the_gone();
void free_shared();

} // namespace body_notes
