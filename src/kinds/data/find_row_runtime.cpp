// The compiled runtime of Find Row.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "action/words.hpp"
#include "inventory/records.hpp"
#include "kinds/data/find_row.hpp"
#include "machine/native_names.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/packed_string_array.hpp>

namespace {

struct TableNames {
	StringName count = "count";
	StringName row = "row";
	StringName row_at = "row_at";
	StringName random_row = "random_row";
	StringName find = "find";
	StringName highest = "highest";
	StringName lowest = "lowest";
	StringName definition = "definition";
	StringName field_names = "field_names";
};

const TableNames &names() {
	return NativeNames::of<TableNames>();
}

class FindRow : public OnceOrRepeating<FindRow> {
	using Kind = SCFindRowAction;

	// What the table is asked, and what is said when it knows no such row.
	struct Search {
		StringName method;
		Array arguments;
		String wanted;
	};

	// False when the table cannot be looked in, of which the game maker is told. May run a game's code.
	static bool is_ready(SCMachineBase *machine, SCMachineAction *action, const Ref<Resource> &table, const StillHere &here) {
		const String name = machine->name_in_messages();
		if (!records::is_table(table.ptr())) {
			verbs::warn_whole(machine, action, Kind::NO_TABLE,
					vformat("Find Row on %s has no table picked. Pick a Data Table beside Table, or make one with Create New > QuillStead Data Table.", name));
			return false;
		}
		const int64_t count = table->call(names().count);
		if (here && count == 0) {
			verbs::warn_whole(machine, action, Kind::NO_ROWS,
					vformat("Find Row on %s: %s has no rows yet, so there is nothing to find. Open it and press Add Row.", name, records::shown_name(table)));
		}
		return count != 0;
	}

	static bool has_field(SCMachineBase *machine, SCMachineAction *action, const Ref<Resource> &table, const StringName &field, const StillHere &here) {
		if (field.is_empty()) {
			String which = "The table has no Data Definition picked yet.";
			if (table->get(names().definition).get_validated_object() != nullptr) {
				const PackedStringArray fields = table->call(names().field_names);
				which = fields.is_empty() ? String("Its Data Definition has no fields yet.") : vformat("The table has %s.", String(", ").join(fields));
			}
			verbs::warn_whole(machine, action, Kind::NO_FIELD,
					vformat("Find Row on %s: pick the field it looks at beside Field. %s", machine->name_in_messages(), which));
			return false;
		}
		const String missing = records::missing_field(table, field);
		if (here && !missing.is_empty()) {
			verbs::warn(machine, action, vformat("nothing was found, because %s.", missing));
		}
		return missing.is_empty();
	}

	static Search search_for(SCMachineBase *machine, SCMachineAction *action) {
		const StringName field = setting_of<&Kind::field>(action);
		switch (setting_of<&Kind::how>(action)) {
			case Kind::AT_PLACE: {
				const double place = values::number_of(machine, double(setting_of<&Kind::place>(action)), setting_of<&Kind::place_variable>(action));
				const int64_t whole = Math::is_finite(place) ? ValueKinds::whole_part(Math::round(place)) : 0;
				return { names().row_at, Array::make(whole), vformat("row %s", words::number(place)) };
			}
			case Kind::RANDOM:
				return { names().random_row, Array(), "row" };
			case Kind::WHERE_FIELD_IS: {
				const Variant equals = values::value_of(machine, setting_of<&Kind::equals>(action), setting_of<&Kind::equals_variable>(action));
				return { names().find, Array::make(field, equals), vformat("row whose %s is %s", field, words::text_of(equals)) };
			}
			case Kind::HIGHEST:
				return { names().highest, Array::make(field), vformat("row whose %s can be compared", field) };
			case Kind::LOWEST:
				return { names().lowest, Array::make(field), vformat("row whose %s can be compared", field) };
			default: {
				const String name =
						words::text_of(values::value_of(machine, setting_of<&Kind::row_name>(action), setting_of<&Kind::row_name_variable>(action)));
				return { names().row, Array::make(name), name.is_empty() ? String("row without a name") : vformat("row called %s", name) };
			}
		}
	}

	// Null when there is none.
	static Ref<Resource> found_in(SCMachineBase *machine, SCMachineAction *action, const Ref<Resource> &table, const StillHere &here) {
		if (!is_ready(machine, action, table, here) || !here) {
			return Ref<Resource>();
		}
		const auto how = setting_of<&Kind::how>(action);
		const bool looks_at_a_field = how >= Kind::WHERE_FIELD_IS && how <= Kind::LOWEST;
		if ((looks_at_a_field && !has_field(machine, action, table, setting_of<&Kind::field>(action), here)) || !here) {
			return Ref<Resource>();
		}
		const Search search = search_for(machine, action);
		const Ref<Resource> row = Object::cast_to<Resource>(table->callv(search.method, search.arguments).get_validated_object());
		if (row.is_null() && here && setting_of<&Kind::not_found_event>(action).is_empty()) {
			verbs::warn(machine, action,
					vformat("there is no %s in %s, so nothing came of it. Name an event under Not Found Event to do something about it.", search.wanted,
							records::shown_name(table)));
		}
		return row;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const Ref<Resource> table = setting_of<&Kind::table>(action);
		const StillHere here(machine);
		const Ref<Resource> row = found_in(machine, action, table, here);
		if (!here) {
			return;
		}
		if (row.is_null()) {
			verbs::let_go(machine, setting_of<&Kind::store_in>(action));
		} else if (setting_of<&Kind::found_event>(action).is_empty()) {
			verbs::keep<&Kind::store_in>(machine, action, row, "the row");
		} else {
			verbs::keep_if_named<&Kind::store_in>(machine, action, row);
		}
		if (here) {
			verbs::send_either<&Kind::found_event, &Kind::not_found_event>(machine, action, row.is_valid(), row);
		}
	}
};

const AddKinds added = {
	add_kind<SCFindRowAction, FindRow>(),
};

} // namespace
