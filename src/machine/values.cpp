// Reading and writing a machine's variables, and keeping them within their limits.

#include "machine/machine_run.hpp"
#include "machine/machine_snapshot.hpp"
#include "machine/names.hpp"
#include "machine/value_kinds.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <cmath>
#include <utility>

namespace {

// Variables that limit one another in a ring stop here.
constexpr int MOST_NESTED_LIMITS = 7;
// A value this near to its limit, relative to it, keeps its own digits.
constexpr double LIMIT_TOLERANCE = 0.00001;
// Machines that go on changing a shared value because another has changed it stop here.
constexpr int MOST_ROUNDS_OF_SHARING = 50;

// Stands for one name being shared, from the outermost write of it to the end of its last round.
class SharingUnderWay {
	LocalVector<SharedName> &names;
	const StringName &name;
	bool outermost = true;

public:
	explicit SharingUnderWay(const StringName &shared) : names(EventRegistry::shared().names_being_shared), name(shared) {
		for (SharedName &other : names) {
			if (other.name == name) {
				other.written_again = true;
				outermost = false;
				return;
			}
		}
		names.push_back({ name, true });
	}
	~SharingUnderWay() {
		if (outermost) {
			names.resize(names.size() - 1);
		}
	}
	SharingUnderWay(const SharingUnderWay &) = delete;
	SharingUnderWay &operator=(const SharingUnderWay &) = delete;

	bool is_outermost() const { return outermost; }
	bool begin_round() {
		for (SharedName &other : names) {
			if (other.name == name) {
				const bool needed = other.written_again;
				other.written_again = false;
				return needed;
			}
		}
		return false;
	}
};

} // namespace

Variant MachineRun::get_value(const StringName &name, const Variant &fallback) const {
	return values.get(name, fallback);
}

bool MachineRun::has_value(const StringName &name) const {
	return values.has(name);
}

void MachineRun::set_value(const StringName &name, const Variant &value) {
	if (Variant *stored = unguarded_value(name)) {
		// The destructor of the former value can call user code and even free this run, so it comes last of all.
		const Variant former = std::exchange(*stored, value);
		mark_values_changed();
		return;
	}
	if (values.shares.is_empty()) {
		write_value(name, value, false);
		return;
	}
	Busy keep(*this);
	const StringName kept_name = name;
	const Variant limited = within_limits(name, value);
	write_value(kept_name, limited, true);
	if (values.shares.has(kept_name)) {
		// A watcher may have written another value since: all are to end with the same one.
		share_value(kept_name, get_value(kept_name, limited));
	}
}

void MachineRun::write_value(const StringName &name, const Variant &value, bool limited) {
	const Variant fresh = limited || values.limits.is_empty() ? value : within_limits(name, value);
	// The destructor of the former value can call user code and even free this run, so it comes last of all.
	Variant former;
	const bool existed = values.put(name, fresh, former);
	mark_values_changed();
	const bool heard = values.watching && values.watched.has(name) && !(existed && ValueKinds::is_same(former, fresh));
	if (!heard && values.limited_by.is_empty()) {
		return;
	}
	Busy keep(*this);
	const StringName kept_name = name;
	if (heard && holds_writes()) {
		values.pending_watchers.insert(kept_name);
	} else if (heard) {
		tell_watchers(kept_name);
	}
	limit_dependents(kept_name);
}

// `name` has a new value: the variables whose bounds it is follow it.
void MachineRun::limit_dependents(const StringName &name) {
	if (values.limit_depth > MOST_NESTED_LIMITS) {
		return;
	}
	values.limit_depth++;
	// Looked up anew for each one: writing it tells watchers, who may start the machine again.
	for (uint32_t i = 0;; i++) {
		const LocalVector<StringName> *dependents = values.limited_by.getptr(name);
		if (dependents == nullptr || i >= dependents->size()) {
			break;
		}
		const StringName dependent = (*dependents)[i];
		if (!has_value(dependent)) {
			continue;
		}
		const Variant now = get_value(dependent, Variant());
		const Variant limited = within_limits(dependent, now);
		if (!ValueKinds::is_same(now, limited)) {
			write_value(dependent, limited, false);
		}
	}
	values.limit_depth--;
}

void MachineRun::share_value(const StringName &name, const Variant &value) {
	Busy keep(*this);
	share_everywhere(values.globals, values.sharing, name, value, node != nullptr ? node->get_instance_id() : 0);
}

// Watchers of a shared value may write it again, in this machine or in another. Were each such write
// shared from within, two machines that answer one another would fan out without end: so a write that
// comes while the name is being shared only leaves its value, and the sharing under way goes round once more.
void MachineRun::share_everywhere(const Dictionary &globals, const Dictionary &sharing, const StringName &name, const Variant &value, uint64_t writer) {
	Dictionary held_globals = globals;
	const Dictionary held_sharing = sharing;
	const StringName kept_name = name;
	const Variant former = held_globals.get(kept_name, Variant());
	held_globals[kept_name] = value;
	SharingUnderWay under_way(kept_name);
	if (!under_way.is_outermost()) {
		return;
	}
	for (int round = 0; round < MOST_ROUNDS_OF_SHARING && under_way.begin_round(); round++) {
		const Variant current_value = held_globals.get(kept_name, Variant());
		// Each applies its own limits. In a further round the one that wrote first is one of the others.
		MachineSnapshot(Array(held_sharing.get(kept_name, Array()))).each([&](SCMachineBase *other) {
			if (round > 0 || other->get_instance_id() != writer) {
				other->run().write_value(kept_name, current_value, false);
			}
		});
	}
}

Variant MachineRun::within_limits(const StringName &name, const Variant &value) const {
	if (!ValueKinds::is_number(value)) {
		return value;
	}
	const ValueLimits *limits = values.limits.getptr(name);
	if (limits == nullptr) {
		return value;
	}
	const double number = value;
	double limited = number;
	double bound = 0.0;
	if (find_bound(limits->low, bound) && limited < bound) {
		limited = bound;
	}
	if (find_bound(limits->high, bound) && limited > bound) {
		limited = bound;
	}
	const double tolerance = MAX(LIMIT_TOLERANCE, LIMIT_TOLERANCE * std::abs(limited));
	if (limited == number || std::abs(limited - number) < tolerance) {
		return value;
	}
	if (value.get_type() == Variant::INT) {
		return ValueKinds::whole_part(std::round(limited));
	}
	return limited;
}

bool MachineRun::find_bound(const ValueBound &bound, double &number) const {
	if (bound.is_number) {
		number = bound.number;
		return true;
	}
	if (bound.variable.is_empty()) {
		return false;
	}
	const Variant held = get_value(bound.variable, Variant());
	if (!ValueKinds::is_number(held)) {
		return false;
	}
	number = held;
	return true;
}

Array MachineRun::limits_of(const StringName &name) const {
	const ValueLimits *limits = values.limits.getptr(name);
	if (limits == nullptr) {
		return Array::make(Variant(), Variant());
	}
	return Array::make(limit_value(limits->low.described()), limit_value(limits->high.described()));
}

Variant MachineRun::limit_value(const Variant &bound) const {
	if (bound.get_type() == Variant::STRING_NAME || bound.get_type() == Variant::STRING) {
		const Variant held = get_value(bound, Variant());
		return ValueKinds::is_number(held) ? held : Variant();
	}
	return ValueKinds::is_number(bound) ? bound : Variant();
}

Dictionary MachineRun::values_dictionary() const {
	return values.dictionary();
}

void MachineRun::load_values(const Dictionary &from) {
	Busy keep(*this);
	values.load(from);
}

// Not left to the end of the frame's work: the machine may fall asleep, or be paused, before it gets there.
void MachineRun::report_values_later() {
	if (node != nullptr) {
		node->call_deferred(MachineNames::shared().send_changed_values);
	}
}

void MachineRun::report_values_now() {
	call_node(MachineNames::shared().report_values);
}

Variant SCMachineBase::fit_to(const Variant &now, const Variant &data) {
	const Variant::Type wanted = now.get_type();
	const Variant::Type kind = data.get_type();
	if (wanted == Variant::NIL || wanted == kind) {
		return data;
	}
	if (wanted == Variant::INT && kind == Variant::FLOAT) {
		return ValueKinds::whole_part(data);
	}
	if (wanted == Variant::FLOAT && (kind == Variant::INT || kind == Variant::BOOL)) {
		return double(data);
	}
	if (wanted == Variant::STRING && kind == Variant::STRING_NAME) {
		return String(data);
	}
	if (wanted == Variant::STRING_NAME && kind == Variant::STRING) {
		return StringName(data);
	}
	return Variant();
}
