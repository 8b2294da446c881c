#pragma once

// What one machine remembers about events, and the process-wide registry through which machines
// hear global events.

#include "machine/on_first_use.hpp"
#include "machine/scratch_lists.hpp"

#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/hash_set.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/callable.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class SCMachineBase;

// An event that arrived while the machine was paused.
struct HeldEvent {
	StringName name;
	Variant data;
	// The row whose action sent it, 0 when it came from outside.
	int64_t serial = 0;
};

// An event whose turn comes once the changes of state under way have ended.
struct PostponedEvent {
	StringName name;
	Variant data;
	// The row whose action sent it, or that has finished; 0 when it came from outside.
	int64_t serial = 0;
	bool of_finished_state = false;
};

// One press of an input, which a state entered by it must not take again.
struct UsedPress {
	uint64_t frame_stamp = 0;
	int64_t serial = 0;
};

struct EventState {
	StringName last_name;
	Variant last_data;
	uint64_t last_sender = 0;
	LocalVector<HeldEvent> held;
	LocalVector<PostponedEvent> postponed;
	// The distinct events that transitions of the design wait for.
	LocalVector<StringName> listening;
	LocalVector<StringName> own_globals;
	// The id the machine stands in the registry by, 0 while it does not.
	uint64_t registered_as = 0;
	HashMap<StringName, UsedPress> used_presses;

	void remember(const StringName &name, const Variant &data, uint64_t sender);
	// How many of its events are being told to listeners, each from within the one before.
	int telling = 0;

	bool has_forwarders() const { return forwarders_known > 0; }
	void forget_last() { remember(StringName(), Variant(), 0); }
	void add_forwarder(const Callable &forwarder);
	void remove_forwarder(const Callable &forwarder);
	const Array &forwarders() const { return forwarder_list; }

private:
	// Replaced, never changed in place: whoever goes through it holds on to a list that stays as it is.
	OnFirstUse<Array> forwarder_list;
	int64_t forwarders_known = 0;
};

// A global variable whose new value is on its way to the machines that share it.
struct SharedName {
	StringName name;
	bool written_again = false;
};

// Who listens for what in the whole game. Machines stand in it by object id.
class EventRegistry {
	// A map for the sake of its order: machines hear an event in the order in which they registered.
	using Listeners = HashMap<uint64_t, bool>;

	HashMap<StringName, Listeners> listeners;
	HashMap<StringName, int> global_uses;
	HashSet<StringName> quest_events;
	HashMap<StringName, uint64_t> senders;
	// What several machines are about to be sent was told to the quests already.
	bool told_quests = false;

public:
	// Borrowed by every MachineSnapshot.
	ScratchLists<uint64_t> machine_lists;
	LocalVector<SharedName> names_being_shared;

	void listen(const StringName &event, uint64_t machine_id);
	void stop_listening(const StringName &event, uint64_t machine_id);
	void listeners_of(const StringName &event, LocalVector<uint64_t> &ids) const;
	void use_global(const StringName &event);
	void drop_global(const StringName &event);
	bool is_global(const StringName &event) const { return global_uses.has(event); }
	void set_quest_events(const Array &events);
	bool is_quest_event(const StringName &event) const { return quest_events.has(event); }
	// However many machines are sent an event together, a quest hears it once: `machine` tells it.
	static void tell_quests(SCMachineBase *machine, const StringName &event);
	static void send_past_quests(SCMachineBase *machine, const StringName &event, const Variant &data);
	bool take_told_quests();
	// To every machine that listens for it, which takes it as its own.
	static void broadcast(const StringName &event, const Variant &data);
	void note_sender(const StringName &event, uint64_t id);
	uint64_t sender_of(const StringName &event) const;

	static EventRegistry &shared();
	static void free_shared();
};
