#pragma once

// Taking records out of the tables of a run row and putting them in. A record may hold the last
// reference to something whose destructor can call user code, and that code may come back to the same table;
// so what a table gives up is handed to the caller and dies there, never inside the table.

#include <godot_cpp/templates/hash_map.hpp>

using namespace godot;

namespace row_records {

template <class Record>
bool take(HashMap<int, Record> &table, int index, Record &taken) {
	const Record *found = table.getptr(index);
	if (found == nullptr) {
		return false;
	}
	taken = *found;
	table.erase(index);
	return true;
}

// Answers what stood there before.
template <class Record>
Record put(HashMap<int, Record> &table, int index, const Record &record) {
	Record former;
	take(table, index, former);
	table.insert(index, record);
	return former;
}

// Any one record, until there are none left.
template <class Record>
bool take_any(HashMap<int, Record> &table, Record &taken) {
	if (table.is_empty()) {
		return false;
	}
	const int index = table.begin()->key;
	return take(table, index, taken);
}

} // namespace row_records
