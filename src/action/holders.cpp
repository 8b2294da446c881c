#include "action/holders.hpp"

#include "machine/native_names.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/templates/local_vector.hpp>

namespace holders {

namespace {

struct Holder {
	int64_t ticket = 0;
	ObjectID machine;
	Variant wanted;
};

struct Held {
	ObjectID object;
	StringName property;
	Variant before;
	// The last one has its way.
	LocalVector<Holder> stack;
};

struct Table {
	mutable LocalVector<Held> all;
	mutable int64_t last_ticket = 0;
};

bool is_gone(ObjectID id) {
	return ObjectDB::get_instance(id) == nullptr;
}

// What has been freed without a word holds nothing any more, and has nothing put back.
void forget_the_gone(LocalVector<Held> &all) {
	for (uint32_t i = all.size(); i > 0; i--) {
		LocalVector<Holder> &stack = all[i - 1].stack;
		for (uint32_t at = stack.size(); at > 0; at--) {
			if (is_gone(stack[at - 1].machine)) {
				stack.remove_at(at - 1);
			}
		}
		if (stack.is_empty() || is_gone(all[i - 1].object)) {
			all.remove_at(i - 1);
		}
	}
}

Held *find(LocalVector<Held> &all, const Object *object, const StringName &property) {
	const ObjectID id(object->get_instance_id());
	for (Held &held : all) {
		if (held.object == id && held.property == property) {
			return &held;
		}
	}
	return nullptr;
}

} // namespace

int64_t hold(const Object *object, const StringName &property, const SCMachineBase *machine, const Variant &wanted) {
	const Table &table = NativeNames::of<Table>();
	Held fresh;
	fresh.object = ObjectID(object->get_instance_id());
	fresh.property = property;
	// Asking may run a game's code, and is over before the table is touched.
	fresh.before = object->get(property);
	forget_the_gone(table.all);
	Held *held = find(table.all, object, property);
	if (held == nullptr) {
		table.all.push_back(fresh);
		held = &table.all[table.all.size() - 1];
	}
	Holder holder;
	holder.ticket = ++table.last_ticket;
	holder.machine = ObjectID(machine->get_instance_id());
	holder.wanted = wanted;
	held->stack.push_back(holder);
	return holder.ticket;
}

void let_go(int64_t ticket) {
	LocalVector<Held> &all = NativeNames::of<Table>().all;
	for (uint32_t i = 0; i < all.size(); i++) {
		LocalVector<Holder> &stack = all[i].stack;
		for (uint32_t at = 0; at < stack.size(); at++) {
			if (stack[at].ticket != ticket) {
				continue;
			}
			const bool had_its_way = at + 1 == stack.size();
			stack.remove_at(at);
			const Variant back = stack.is_empty() ? all[i].before : stack[stack.size() - 1].wanted;
			const ObjectID id = all[i].object;
			const StringName property = all[i].property;
			if (stack.is_empty()) {
				all.remove_at(i);
			}
			Object *object = had_its_way ? ObjectDB::get_instance(id) : nullptr;
			if (object != nullptr) {
				object->set(property, back);
			}
			return;
		}
	}
}

void change_for_good(const Object *object, const StringName &property, const Variant &value) {
	LocalVector<Held> &all = NativeNames::of<Table>().all;
	forget_the_gone(all);
	if (Held *held = find(all, object, property)) {
		held->before = value;
	}
}

Array all_held() {
	LocalVector<Held> &all = NativeNames::of<Table>().all;
	forget_the_gone(all);
	Array rows;
	for (const Held &held : all) {
		Array row;
		row.push_back(ObjectDB::get_instance(held.object));
		row.push_back(held.property);
		row.push_back(held.before);
		rows.push_back(row);
	}
	return rows;
}

} // namespace holders
