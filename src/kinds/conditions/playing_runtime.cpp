// The compiled condition about what an animation, a sound or a video is doing.

#include "action/add_kind.hpp"
#include "action/conditions.hpp"
#include "kinds/conditions/playing.hpp"

#include <godot_cpp/classes/animated_sprite2d.hpp>
#include <godot_cpp/classes/animated_sprite3d.hpp>
#include <godot_cpp/classes/animation.hpp>
#include <godot_cpp/classes/animation_node_state_machine_playback.hpp>
#include <godot_cpp/classes/animation_player.hpp>
#include <godot_cpp/classes/animation_tree.hpp>
#include <godot_cpp/classes/audio_stream.hpp>
#include <godot_cpp/classes/audio_stream_player.hpp>
#include <godot_cpp/classes/audio_stream_player2d.hpp>
#include <godot_cpp/classes/audio_stream_player3d.hpp>
#include <godot_cpp/classes/sprite_frames.hpp>
#include <godot_cpp/classes/video_stream_player.hpp>
#include <godot_cpp/core/math.hpp>

namespace {

// What a player of any kind is doing.
struct Played {
	bool playing = false;
	// Stopped at the end of what it played.
	bool ended = false;
	// Of an animation: the one that plays or has ended. A sound has no name.
	StringName name;
	bool named = false;
	double fraction = 0.0;
};

double share(double position, double length) {
	return length > 0.0 ? position / length : 0.0;
}

Played of_animation(AnimationPlayer *player) {
	Played played;
	played.named = true;
	played.name = player->get_assigned_animation();
	played.playing = player->is_playing();
	// A player that was stopped has no position, and asking for one is an engine error.
	if (player->is_animation_active() && player->has_animation(played.name)) {
		played.fraction = share(player->get_current_animation_position(), player->get_animation(played.name)->get_length());
		// One played backwards ends where it begins.
		played.ended = !played.playing && (played.fraction >= 1.0 - CMP_EPSILON || played.fraction <= CMP_EPSILON);
	}
	return played;
}

template <class Sprite>
Played of_sprite(Sprite *sprite) {
	Played played;
	played.named = true;
	played.name = sprite->get_animation();
	played.playing = sprite->is_playing();
	const Ref<SpriteFrames> frames = sprite->get_sprite_frames();
	if (frames.is_valid() && frames->has_animation(played.name)) {
		played.fraction = share(sprite->get_frame() + sprite->get_frame_progress(), frames->get_frame_count(played.name));
		played.ended = !played.playing && played.fraction >= 1.0 - CMP_EPSILON;
	}
	return played;
}

template <class Player>
Played of_sound(Player *player) {
	Played played;
	played.playing = player->is_playing();
	played.ended = !played.playing;
	const Ref<AudioStream> stream = player->get_stream();
	if (played.playing && stream.is_valid()) {
		played.fraction = share(player->get_playback_position(), stream->get_length());
	}
	return played;
}

Played of_video(VideoStreamPlayer *player) {
	Played played;
	played.playing = player->is_playing();
	played.ended = !played.playing;
	if (played.playing) {
		played.fraction = share(player->get_stream_position(), player->get_stream_length());
	}
	return played;
}

// False, and said, when a state machine is asked for that the tree does not have.
bool of_tree(SCMachineBase *machine, SCMachineCondition *condition, AnimationTree *tree, Played &played) {
	using Kind = SCPlayingCondition;
	const String inside = setting_of<&Kind::state_machine>(condition);
	const String parameter = inside.is_empty() ? String("parameters/playback") : vformat("parameters/%s/playback", inside);
	const AnimationNodeStateMachinePlayback *playback = Object::cast_to<AnimationNodeStateMachinePlayback>(tree->get(parameter).get_validated_object());
	if (playback == nullptr) {
		const bool needs_one =
				!inside.is_empty() || !setting_of<&Kind::animation_name>(condition).is_empty() || setting_of<&Kind::test>(condition) != Kind::IS_PLAYING;
		if (needs_one) {
			verbs::warn(machine, condition,
					vformat("%s has no state machine %s, so the answer is no. Type the name of one in the tree under State Machine.", tree->get_name(),
							inside.is_empty() ? String("of its own") : inside));
			return false;
		}
		played.playing = tree->is_active();
		return true;
	}
	played.named = true;
	played.name = playback->get_current_node();
	played.playing = tree->is_active() && playback->is_playing();
	played.fraction = share(playback->get_current_play_position(), playback->get_current_length());
	played.ended = played.fraction >= 1.0 - CMP_EPSILON;
	return true;
}

template <class... Players>
bool is_one_of(Node *node) {
	return (Object::cast_to<Players>(node) || ...);
}

bool can_play(Node *node) {
	return is_one_of<AnimationMixer, AnimatedSprite2D, AnimatedSprite3D, AudioStreamPlayer, AudioStreamPlayer2D, AudioStreamPlayer3D, VideoStreamPlayer>(node);
}

// The node itself, else the first below it.
Node *player_at(Node *node) {
	if (can_play(node)) {
		return node;
	}
	for (int i = 0; i < node->get_child_count(); i++) {
		if (Node *found = player_at(node->get_child(i))) {
			return found;
		}
	}
	return nullptr;
}

// False when it is no such player.
template <class Player>
bool look(Node *node, Played (*of)(Player *), Played &played) {
	Player *player = Object::cast_to<Player>(node);
	if (player != nullptr) {
		played = of(player);
	}
	return player != nullptr;
}

bool look_at(SCMachineBase *machine, SCMachineCondition *condition, Node *player, Played &played) {
	if (AnimationTree *tree = Object::cast_to<AnimationTree>(player)) {
		return of_tree(machine, condition, tree, played);
	}
	return look(player, &of_animation, played) || look(player, &of_sprite<AnimatedSprite2D>, played) || look(player, &of_sprite<AnimatedSprite3D>, played) ||
			look(player, &of_sound<AudioStreamPlayer>, played) || look(player, &of_sound<AudioStreamPlayer2D>, played) ||
			look(player, &of_sound<AudioStreamPlayer3D>, played) || look(player, &of_video, played);
}

bool has_animation(Node *player, const StringName &name) {
	if (AnimationPlayer *animation = Object::cast_to<AnimationPlayer>(player)) {
		return animation->has_animation(name);
	}
	Ref<SpriteFrames> frames;
	if (AnimatedSprite2D *sprite_2d = Object::cast_to<AnimatedSprite2D>(player)) {
		frames = sprite_2d->get_sprite_frames();
	} else if (AnimatedSprite3D *sprite_3d = Object::cast_to<AnimatedSprite3D>(player)) {
		frames = sprite_3d->get_sprite_frames();
	} else {
		return true;
	}
	return frames.is_valid() && frames->has_animation(name);
}

bool is_playing_so(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCPlayingCondition;
	Node *node = conditions::node<&Kind::node_path>(machine, condition);
	if (node == nullptr) {
		return false;
	}
	Node *player = player_at(node);
	if (player == nullptr) {
		verbs::warn(machine, condition,
				vformat("nothing on %s or under it plays an animation, a sound or a video, so the answer is no. Pick what plays under Node Path.",
						node->get_name()));
		return false;
	}
	Played played;
	if (!look_at(machine, condition, player, played)) {
		return false;
	}
	const StringName wanted = setting_of<&Kind::animation_name>(condition);
	if (!wanted.is_empty() && played.named && played.name != wanted) {
		if (!has_animation(player, wanted)) {
			verbs::warn(machine, condition,
					vformat("%s has no animation called %s, so the answer is no. Check the name under Animation Name.", player->get_name(), wanted));
		}
		return false;
	}
	switch (setting_of<&Kind::test>(condition)) {
		case Kind::IS_PLAYING:
			return played.playing;
		case Kind::HAS_ENDED:
			return played.ended;
		case Kind::HAS_GOT_AS_FAR_AS:
			break;
	}
	const double fraction = setting_of<&Kind::fraction>(condition);
	return (played.playing && played.fraction + CMP_EPSILON >= fraction) || (played.ended && played.named);
}

const AddKinds added = {
	add_condition<SCPlayingCondition, &is_playing_so>(),
};

} // namespace
