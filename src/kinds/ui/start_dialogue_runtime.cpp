// The compiled runtime of Start Dialogue: which line comes next, and what an answer does. How a line is shown is the Dialogue Box's
// business; what is in a dialogue, and what was said and picked, are its own and the conversation script's.

#include "action/add_kind.hpp"
#include "action/native_calls.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "kinds/ui/held_player.hpp"
#include "kinds/ui/start_dialogue.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/display_server.hpp>
#include <godot_cpp/classes/input.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/texture2d.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/variant/packed_int32_array.hpp>
#include <godot_cpp/variant/packed_string_array.hpp>
#include <godot_cpp/variant/typed_array.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

using Kind = SCStartDialogueAction;

// A box that answers each line as it is shown goes round for ever where lines lead back to one another.
constexpr int MOST_LINES_WITHOUT_A_PRESS = 1000;

enum AnswersAre {
	THE_PLAYER_CHOOSES,
	AT_RANDOM,
};

enum Refused {
	HIDDEN,
	GREYED,
};

enum Came {
	MOVED_ON,
	ANSWERED,
};

struct Names {
	// In the slot: the talk record, and in it what it holds.
	StringName talk = "talk";
	StringName box = "box";
	StringName dialogue = "dialogue";
	StringName finish = "finish";
	StringName on = "on";
	StringName answer = "answer";
	StringName taken = "taken";
	StringName early = "early";
	StringName language = "language";
	StringName gone = "gone";
	StringName line = "line";
	StringName offered = "offered";
	// Which of the buttons are greyed, by their places.
	StringName refused = "refused";
	StringName held = "held";
	StringName held_mode = "held_mode";
	StringName tickets = "tickets";
	StringName mouse_mode = "mouse_mode";
	StringName spoke = "spoke";
	StringName let_go = "let_go";
	// While a line is being shown or an answer does its work, and what the box said meanwhile.
	StringName is_busy = "is_busy";
	StringName came = "came";

	StringName box_script = "dialogue_box";
	StringName is_talking = "is_talking";
	StringName prepare = "prepare";
	StringName show_line = "show_line";
	StringName reword = "reword";
	StringName close = "close";
	StringName moved_on = "moved_on";
	StringName answered = "answered";
	StringName taken_over = "taken_over";
	StringName left_early = "left_early";
	StringName language_changed = "language_changed";
	StringName tree_exited = "tree_exited";

	StringName first_line = "first_line";
	StringName id = "id";
	StringName words = "words";
	StringName actor = "actor";
	StringName shown_speaker = "shown_speaker";
	StringName shown_portrait = "shown_portrait";
	StringName answers = "answers";
	StringName answers_are = "answers_are";
	StringName next_line = "next_line";
	StringName is_offered = "offered";
	StringName only_once = "only_once";
	StringName refused_as = "refused";
	StringName refused_words = "refused_words";
	StringName make_change = "make_change";
	StringName start_quest = "start_quest";
	StringName send_event = "send_event";
	StringName to_line = "to_line";

	StringName conversation = "conversation";
	StringName heard = "heard";
	StringName heard_key = "heard_key";
	StringName answer_in_line = "answer_in_line";
	StringName was_picked = "was_picked";
	StringName voice_of = "voice_of";
	StringName spoken = "spoken";
	StringName talked = "talked";
	StringName quests = "quests";
	StringName start = "start";

	StringName values = "values";
	StringName tr = "tr";
	String panel_container = "PanelContainer";
	String anything = "*";
};

const Names &names() {
	return NativeNames::of<Names>();
}

Object *object_in(const Variant &held) {
	return held.get_type() == Variant::OBJECT ? held.get_validated_object() : nullptr;
}

// What an object answers, where it may be one that somebody else made: nil when it knows nothing of the method.
template <class... Arguments>
Variant ask(Object *object, const StringName &method, const Arguments &...arguments) {
	return object != nullptr && object->has_method(method) ? object->call(method, arguments...) : Variant();
}

bool has_text(Object *object, const StringName &member) {
	const Variant held = object->get(member);
	return held.get_type() == Variant::STRING || held.get_type() == Variant::STRING_NAME;
}

StringName name_in(Object *object, const StringName &member) {
	return has_text(object, member) ? StringName(object->get(member)) : StringName();
}

// Translated, and with the values of variables in it.
String text_in(Object *object, const StringName &member, SCMachineBase *machine) {
	const String text = has_text(object, member) ? String(object->get(member)) : String();
	return text.is_empty() ? text : words::fill_in(object->call(names().tr, text), machine);
}

Array answers_of(Object *line) {
	const Variant answers = line->get(names().answers);
	return values::is_list(answers) ? Array(answers) : Array();
}

// By its own id, so that what was picked stays picked when answers are moved about; by its place for one without.
Variant name_of_answer(Object *answer, int64_t place) {
	const StringName id = name_in(answer, names().id);
	return id.is_empty() ? Variant(place) : Variant(id);
}

bool is_a_box(const Node *node) {
	return CompanionScripts::is_one(node, names().box_script);
}

Node *box_below(Node *top) {
	const TypedArray<Node> panels = top != nullptr ? top->find_children(names().anything, names().panel_container, true, false) : TypedArray<Node>();
	for (int64_t i = 0; i < panels.size(); i++) {
		Node *panel = Object::cast_to<Node>(panels[i].get_validated_object());
		if (is_a_box(panel)) {
			return panel;
		}
	}
	return nullptr;
}

Node *box_in_scene(const SCMachineBase *machine) {
	if (!machine->is_inside_tree()) {
		return nullptr;
	}
	SceneTree *tree = machine->get_tree();
	Node *box = box_below(tree->get_current_scene());
	return box != nullptr ? box : box_below(tree->get_root());
}

void note_heard(const Variant &key) {
	const Ref<Script> script = CompanionScripts::script(names().conversation);
	const Variant held = script.is_valid() ? script->get(names().heard) : Variant();
	if (held.get_type() == Variant::DICTIONARY) {
		Dictionary heard = held;
		heard[key] = true;
	}
}

Variant ask_conversation(const StringName &method, const Array &arguments) {
	return CompanionScripts::call(names().conversation, method, arguments);
}

bool hides_the_pointer(Input::MouseMode mode) {
	return mode == Input::MOUSE_MODE_HIDDEN || mode == Input::MOUSE_MODE_CAPTURED || mode == Input::MOUSE_MODE_CONFINED_HIDDEN;
}

void disconnect(Node *box, const StringName &signal, const Variant &callable) {
	if (callable.get_type() == Variant::CALLABLE && box->has_signal(signal) && box->is_connected(signal, callable)) {
		box->disconnect(signal, callable);
	}
}

// One thing that happens in a talk, from beginning to end. Everything it calls may run a game's code, which may end the talk, leave
// the state or free the machine, so the record is asked each time.
class Talk {
	SCMachineBase *machine;
	SCMachineAction *action;
	int index;
	StillHere here;
	Dictionary record;

public:
	Talk(SCMachineBase *of_machine, SCMachineAction *of_action, int of_index, const Dictionary &of_record) :
			machine(of_machine), action(of_action), index(of_index), here(of_machine), record(of_record) {}

	static Dictionary record_of(SCMachineBase *machine, int index) {
		const Variant held = machine->slot(index).get(names().talk, Variant());
		return held.get_type() == Variant::DICTIONARY ? Dictionary(held) : Dictionary();
	}

	static bool is_over(const Dictionary &record) { return record.is_empty() || record.get(names().let_go, false).booleanize(); }

	void start(Node *box, const Ref<Resource> &dialogue, const Variant &first_line) {
		record[names().box] = box;
		record[names().dialogue] = dialogue;
		record[names().finish] = machine->finisher(index);
		machine->slot(index)[names().talk] = record;
		listen(names().moved_on, names().on, "Start Dialogue: moved on", &hear_moved_on);
		listen(names().answered, names().answer, "Start Dialogue: answered", &hear_answered);
		listen(names().taken_over, names().taken, "Start Dialogue: taken over", &hear_taken_over);
		listen(names().left_early, names().early, "Start Dialogue: left early", &hear_left_early);
		listen(names().language_changed, names().language, "Start Dialogue: language changed", &hear_language);
		// A box that only moves to another parent is in the tree again by then.
		listen(names().tree_exited, names().gone, "Start Dialogue: box gone", &hear_gone, Object::CONNECT_DEFERRED);
		if (setting_of<&Kind::hold_the_player_still>(action)) {
			hold_the_player();
		}
		if (goes_on()) {
			ask_conversation(names().talked, Array::make(machine));
		}
		if (goes_on()) {
			play(first_line);
		}
	}

	void hear(Came what, const Variant &argument) {
		if (record.get(names().is_busy, false).booleanize()) {
			if (!record.has(names().came)) {
				record[names().came] = Array::make(int64_t(what), argument);
			}
			return;
		}
		const Variant next = line_after(what, argument);
		if (object_in(next) != nullptr) {
			play(next);
		}
	}

	void end() {
		if (is_over(record)) {
			return;
		}
		const Weak<SCMachineBase> kept(machine);
		const StringName event = setting_of<&Kind::finished_event>(action);
		put_everything_back(record);
		SCMachineBase *still = kept.get();
		if (still != nullptr && still->is_inside_tree()) {
			CompanionScripts::call(names().quests, names().talked, Array::make(still, still->get_tree()));
		}
		finish(record);
		verbs::send(kept.get(), event);
	}

	// Ended from outside: nothing is sent.
	static void stand_down(Dictionary record) {
		if (!is_over(record)) {
			put_everything_back(record);
			finish(record);
		}
	}

	void reword() {
		Object *line = object_in(record.get(names().line, Variant()));
		Object *box = object_in(record.get(names().box, Variant()));
		if (line == nullptr || box == nullptr) {
			return;
		}
		PackedStringArray shown;
		if (int64_t(line->get(names().answers_are)) != AT_RANDOM) {
			const Array answers = answers_of(line);
			const PackedInt32Array offered = record[names().offered];
			const PackedInt32Array refused = record[names().refused];
			for (int64_t i = 0; i < offered.size(); i++) {
				Object *answer = offered[i] < answers.size() ? object_in(answers[offered[i]]) : nullptr;
				shown.push_back(answer != nullptr ? words_of(answer, refused.has(int32_t(i))) : String());
			}
		}
		const String said = text_in(line, names().words, machine);
		const String speaker = words::fill_in(words::text_of(ask(line, names().shown_speaker)), machine);
		ask(box, names().reword, said, speaker, shown);
	}

	bool box_is_gone() const {
		const Node *box = Object::cast_to<Node>(object_in(record.get(names().box, Variant())));
		return box == nullptr || !box->is_inside_tree();
	}

private:
	bool goes_on() const { return here && !is_over(record); }

	void listen(const StringName &signal, const StringName &key, const char *name, ActionCall::Handler handler, uint32_t flags = 0) {
		Node *box = Object::cast_to<Node>(object_in(record[names().box]));
		if (box != nullptr && box->has_signal(signal)) {
			const Callable callable = ActionCall::make(name, machine, action, index, handler);
			record[key] = callable;
			box->connect(signal, callable, flags);
		}
	}

	void hold_the_player() {
		Input *input = Input::get_singleton();
		const Input::MouseMode mode = input->get_mouse_mode();
		if (hides_the_pointer(mode)) {
			record[names().mouse_mode] = int64_t(mode);
			input->set_mouse_mode(Input::MOUSE_MODE_VISIBLE);
		}
		if (Node *player = held_player::to_hold(machine)) {
			Node *box = Object::cast_to<Node>(object_in(record[names().box]));
			record[names().held] = player;
			record[names().held_mode] = int64_t(player->get_process_mode());
			record[names().tickets] = held_player::hold(machine, player, box);
			// Over already: what was put back then did not have these yet.
			if (is_over(record)) {
				release_the_player(record);
			}
		}
	}

	static void release_the_player(Dictionary record) {
		const Variant tickets = record.get(names().tickets, Variant());
		if (tickets.get_type() == Variant::ARRAY) {
			const Variant player = record.get(names().held, Variant());
			record.erase(names().held);
			record.erase(names().tickets);
			held_player::release(player, tickets);
		}
	}

	static void put_everything_back(Dictionary record) {
		record[names().let_go] = true;
		Node *box = Object::cast_to<Node>(object_in(record.get(names().box, Variant())));
		if (is_a_box(box)) {
			for (const auto &[signal, key] : { std::pair(names().moved_on, names().on), std::pair(names().answered, names().answer),
						 std::pair(names().taken_over, names().taken), std::pair(names().left_early, names().early),
						 std::pair(names().language_changed, names().language), std::pair(names().tree_exited, names().gone) }) {
				disconnect(box, signal, record.get(key, Variant()));
			}
			ask(box, names().close);
		}
		release_the_player(record);
		Input *input = Input::get_singleton();
		if (record.has(names().mouse_mode) && input->get_mouse_mode() == Input::MOUSE_MODE_VISIBLE) {
			input->set_mouse_mode(Input::MouseMode(int64_t(record[names().mouse_mode])));
		}
		record.erase(names().mouse_mode);
		stop_speaking(record);
	}

	static void finish(const Dictionary &record) {
		const Callable callable = record.get(names().finish, Callable());
		callable.call();
	}

	// Shows that line, and the next as long as the box answers each in the same breath.
	void play(Variant line) {
		for (int shown = 0; object_in(line) != nullptr; shown++) {
			if (shown == MOST_LINES_WITHOUT_A_PRESS) {
				verbs::say<&Kind::warn_dialogue>(action, machine, index, int64_t(Kind::NO_END), name_in(object_in(line), names().id));
				if (goes_on()) {
					end();
				}
				return;
			}
			record.erase(names().came);
			record[names().is_busy] = true;
			show(line);
			if (!goes_on()) {
				return;
			}
			record[names().is_busy] = false;
			const Variant came = record.get(names().came, Variant());
			if (came.get_type() != Variant::ARRAY) {
				return;
			}
			const Array what = came;
			line = line_after(Came(int64_t(what[0])), what[1]);
		}
	}

	void show(const Variant &shown) {
		Object *line = object_in(shown);
		record[names().line] = shown;
		const Variant key = ask_conversation(names().heard_key, Array::make(record[names().dialogue], name_in(line, names().id)));
		note_heard(key);

		const PackedStringArray buttons = offer(line, key);
		if (!goes_on()) {
			return;
		}
		const String said = text_in(line, names().words, machine);
		const String speaker = words::fill_in(words::text_of(ask(line, names().shown_speaker)), machine);
		const Variant portrait = Object::cast_to<Texture2D>(object_in(ask(line, names().shown_portrait)));
		const Variant actor = Object::cast_to<Resource>(object_in(line->get(names().actor)));
		const Variant box = record[names().box];
		if (!goes_on()) {
			return;
		}
		ask(object_in(box), names().prepare, shown, record[names().refused]);
		ask(object_in(box), names().show_line, said, speaker, portrait, buttons, actor);
		if (goes_on()) {
			speak(said, actor);
		}
	}

	// The words of the buttons. Which answers they are goes into the record.
	PackedStringArray offer(Object *line, const Variant &key) {
		const bool at_random = int64_t(line->get(names().answers_are)) == AT_RANDOM;
		const Array answers = answers_of(line);
		const Variant held = answers.is_empty() ? Variant() : machine->get(names().values);
		PackedInt32Array offered;
		PackedInt32Array refused;
		PackedStringArray shown;
		for (int64_t i = 0; i < answers.size() && goes_on(); i++) {
			const Variant kept = answers[i];
			Object *answer = object_in(kept);
			if (answer == nullptr || !has_text(answer, names().words)) {
				continue;
			}
			const bool takes_part = !answer->has_method(names().is_offered) || answer->call(names().is_offered, machine, held).booleanize();
			answer = object_in(kept);
			if (!goes_on() || answer == nullptr) {
				continue;
			}
			const bool is_greyed = !takes_part && !at_random && int64_t(answer->get(names().refused_as)) == GREYED;
			if (!takes_part && !is_greyed) {
				continue;
			}
			if (answer->get(names().only_once).booleanize() &&
					ask_conversation(names().was_picked, Array::make(machine, key, name_of_answer(answer, i))).booleanize()) {
				continue;
			}
			if (is_greyed) {
				refused.push_back(int32_t(offered.size()));
			}
			offered.push_back(int32_t(i));
			if (!at_random) {
				shown.push_back(words_of(answer, is_greyed));
			}
		}
		record[names().offered] = offered;
		record[names().refused] = refused;
		return shown;
	}

	String words_of(Object *answer, bool is_greyed) {
		const String other = is_greyed ? text_in(answer, names().refused_words, machine) : String();
		return other.is_empty() ? text_in(answer, names().words, machine) : other;
	}

	void speak(const String &said, const Variant &actor) {
		const String voice = ask_conversation(names().voice_of, Array::make(actor));
		const String aloud = voice.is_empty() ? String() : String(ask_conversation(names().spoken, Array::make(said)));
		if (aloud.is_empty()) {
			stop_speaking(record);
			return;
		}
		DisplayServer::get_singleton()->tts_speak(aloud, voice, 50, 1.0f, 1.0f, 0, true);
		record[names().spoke] = true;
	}

	static void stop_speaking(Dictionary record) {
		if (record.get(names().spoke, false).booleanize()) {
			record[names().spoke] = false;
			DisplayServer::get_singleton()->tts_stop();
		}
	}

	// Null when there is none: then the talk has ended, or goes on waiting.
	Variant line_after(Came what, const Variant &argument) {
		Object *line = object_in(record.get(names().line, Variant()));
		if (line == nullptr) {
			end();
			return Variant();
		}
		const PackedInt32Array offered = record[names().offered];
		if (what == ANSWERED) {
			const int64_t place = argument.get_type() == Variant::INT ? int64_t(argument) : -1;
			const bool is_there = place >= 0 && place < offered.size() && !PackedInt32Array(record[names().refused]).has(int32_t(place));
			return is_there ? line_answered(line, offered[place]) : Variant();
		}
		if (int64_t(line->get(names().answers_are)) == AT_RANDOM && !offered.is_empty()) {
			return line_answered(line, offered[UtilityFunctions::randi() % offered.size()]);
		}
		return line_called(name_in(line, names().next_line));
	}

	Variant line_answered(Object *line, int64_t place) {
		const Array answers = answers_of(line);
		const Variant kept = place < answers.size() ? answers[place] : Variant();
		Object *answer = object_in(kept);
		if (answer == nullptr) {
			end();
			return Variant();
		}
		// What the box says while the answer does its work, it says of a line that is over.
		record[names().is_busy] = true;
		// 1. It was picked.
		const StringName id = name_in(line, names().id);
		const Variant in_line = ask_conversation(names().answer_in_line, Array::make(id, name_of_answer(answer, place)));
		note_heard(ask_conversation(names().heard_key, Array::make(record[names().dialogue], in_line)));
		// 2. Its change.
		ask(answer, names().make_change, machine, machine->get(names().values));
		// 3. Its quest.
		answer = object_in(kept);
		if (goes_on() && answer != nullptr && machine->is_inside_tree()) {
			const Variant quest = Object::cast_to<Resource>(object_in(answer->get(names().start_quest)));
			if (object_in(quest) != nullptr) {
				CompanionScripts::call(names().quests, names().start, Array::make(quest, machine->get_tree()));
			}
		}
		// 4. Its event.
		answer = object_in(kept);
		if (goes_on() && answer != nullptr) {
			verbs::send(machine, name_in(answer, names().send_event));
		}
		if (!goes_on()) {
			return Variant();
		}
		// 5. The line it leads to.
		record[names().is_busy] = false;
		answer = object_in(kept);
		return line_called(answer != nullptr ? name_in(answer, names().to_line) : StringName());
	}

	Variant line_called(const StringName &id) {
		if (!id.is_empty()) {
			const Variant next = ask(object_in(record[names().dialogue]), names().line, id);
			if (!goes_on()) {
				return Variant();
			}
			if (object_in(next) != nullptr) {
				return next;
			}
			verbs::say<&Kind::warn_dialogue>(action, machine, index, int64_t(Kind::NO_SUCH_LINE), id);
		}
		if (goes_on()) {
			end();
		}
		return Variant();
	}

	static void hear_moved_on(SCMachineBase *machine, SCMachineAction *action, int index, const Array &) {
		const Dictionary record = record_of(machine, index);
		if (!is_over(record)) {
			Talk(machine, action, index, record).hear(MOVED_ON, Variant());
		}
	}

	static void hear_answered(SCMachineBase *machine, SCMachineAction *action, int index, const Array &handed_over) {
		const Dictionary record = record_of(machine, index);
		if (!is_over(record)) {
			Talk(machine, action, index, record).hear(ANSWERED, handed_over.is_empty() ? Variant(-1) : handed_over[0]);
		}
	}

	static void hear_taken_over(SCMachineBase *machine, SCMachineAction *, int index, const Array &) { stand_down(record_of(machine, index)); }

	static void hear_left_early(SCMachineBase *machine, SCMachineAction *action, int index, const Array &) {
		Talk(machine, action, index, record_of(machine, index)).end();
	}

	static void hear_language(SCMachineBase *machine, SCMachineAction *action, int index, const Array &) {
		const Dictionary record = record_of(machine, index);
		if (!is_over(record)) {
			Talk(machine, action, index, record).reword();
		}
	}

	static void hear_gone(SCMachineBase *machine, SCMachineAction *action, int index, const Array &) {
		const Dictionary record = record_of(machine, index);
		if (is_over(record) || !Talk(machine, action, index, record).box_is_gone()) {
			return;
		}
		verbs::warn(machine, action, "its Dialogue Box left the scene while something was said, so the dialogue ended there. Keep the box until then.");
		if (!is_over(record)) {
			Talk(machine, action, index, record).end();
		}
	}
};

class StartDialogue : public SCNativeAction {
	static void begin(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StillHere here(machine);
		const NodePath path = setting_of<&Kind::box_path>(action);
		const Ref<Resource> dialogue = setting_of<&Kind::conversation>(action);
		// Kept by what they are, as everything from here on may run a game's code.
		Node *there = path.is_empty() ? box_in_scene(machine) : values::node_of(machine, path);
		const Weak<Node> box(there);
		const Variant first_line = ask(dialogue.ptr(), names().first_line);
		if (!here) {
			return;
		}
		if (object_in(first_line) == nullptr) {
			verbs::say<&Kind::warn_dialogue>(action, machine, index, int64_t(Kind::NO_DIALOGUE), Variant());
		} else if (is_a_box(box.get())) {
			if (ask(box.get(), names().is_talking).booleanize() && box.get() != nullptr) {
				box.get()->emit_signal(names().taken_over);
			}
			there = box.get();
			if (here && there != nullptr && there->is_inside_tree()) {
				Talk(machine, action, index, Dictionary()).start(there, dialogue, first_line);
				return;
			}
		} else {
			verbs::say<&Kind::warn_dialogue>(action, machine, index, int64_t(path.is_empty() ? Kind::NO_BOX_ANYWHERE : Kind::NO_BOX_THERE), box.get());
		}
		if (here) {
			machine->finish(index);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override { begin(machine, action, index); }

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override { Talk::stand_down(Talk::record_of(machine, index)); }
};

const AddKinds added = {
	add_kind<SCStartDialogueAction, StartDialogue>(),
};

} // namespace
