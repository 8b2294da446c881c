// A doubly linked list. An element stays where it is until it is erased, so a loop may erase the one it is at after taking `next()`.
#ifndef GODOT_CPP_TEMPLATES_LIST_HPP
#define GODOT_CPP_TEMPLATES_LIST_HPP

#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/templates/sort_array.hpp>

#include <initializer_list>
#include <utility>

namespace godot {

template <typename T>
class List {
public:
	class Element {
		friend class List;

		T value;
		Element *next_element = nullptr;
		Element *prev_element = nullptr;
		List *owner = nullptr;

	public:
		explicit Element(T held) : value(std::move(held)) {}

		const Element *next() const { return next_element; }
		Element *next() { return next_element; }
		const Element *prev() const { return prev_element; }
		Element *prev() { return prev_element; }
		const T &get() const { return value; }
		T &get() { return value; }
		void set(const T &held) { value = held; }
		const T &operator*() const { return value; }
		T &operator*() { return value; }
		const T *operator->() const { return &value; }
		T *operator->() { return &value; }
		void erase() { owner->erase(this); }
		void transfer_to_back(List *to) {
			owner->unlink(this);
			to->link_before(this, nullptr);
		}
	};

private:
	template <typename E, typename V>
	struct Walk {
		E *element = nullptr;

		V &operator*() const { return element->get(); }
		V *operator->() const { return &element->get(); }
		Walk &operator++() {
			element = element ? element->next() : nullptr;
			return *this;
		}
		Walk &operator--() {
			element = element ? element->prev() : nullptr;
			return *this;
		}
		bool operator==(const Walk &other) const { return element == other.element; }
		bool operator!=(const Walk &other) const { return element != other.element; }
		explicit operator bool() const { return element != nullptr; }
	};

	Element *first = nullptr;
	Element *last = nullptr;
	int count = 0;

public:
	using Iterator = Walk<Element, T>;
	using ConstIterator = Walk<const Element, const T>;

	List() = default;
	List(std::initializer_list<T> values) {
		for (const T &value : values) {
			push_back(value);
		}
	}
	List(const List &other) { copy_from(other); }
	List(List &&other) noexcept { take_from(other); }
	List &operator=(const List &other) {
		if (this != &other) {
			clear();
			copy_from(other);
		}
		return *this;
	}
	List &operator=(List &&other) noexcept {
		if (this != &other) {
			clear();
			take_from(other);
		}
		return *this;
	}
	~List() { clear(); }

	const Element *front() const { return first; }
	Element *front() { return first; }
	const Element *back() const { return last; }
	Element *back() { return last; }
	int size() const { return count; }
	bool is_empty() const { return count == 0; }

	Element *push_back(const T &value) { return link_before(memnew(Element(value)), nullptr); }
	Element *push_back(T &&value) { return link_before(memnew(Element(std::move(value))), nullptr); }
	Element *push_front(const T &value) { return link_before(memnew(Element(value)), first); }
	Element *push_front(T &&value) { return link_before(memnew(Element(std::move(value))), first); }
	// Without an element they go to the end, and to the front.
	Element *insert_after(Element *element, const T &value) {
		ERR_FAIL_COND_V(element != nullptr && element->owner != this, nullptr);
		return link_before(memnew(Element(value)), element ? element->next_element : nullptr);
	}
	Element *insert_before(Element *element, const T &value) {
		ERR_FAIL_COND_V(element != nullptr && element->owner != this, nullptr);
		return link_before(memnew(Element(value)), element ? element : first);
	}
	void pop_back() {
		if (last != nullptr) {
			erase(last);
		}
	}
	void pop_front() {
		if (first != nullptr) {
			erase(first);
		}
	}

	Element *find(const T &value) {
		Element *element = first;
		while (element != nullptr && !(element->value == value)) {
			element = element->next_element;
		}
		return element;
	}
	const Element *find(const T &value) const { return const_cast<List *>(this)->find(value); }
	bool erase(Element *element) {
		ERR_FAIL_NULL_V(element, false);
		ERR_FAIL_COND_V(element->owner != this, false);
		unlink(element);
		memdelete(element);
		return true;
	}
	bool erase(const T &value) {
		Element *element = find(value);
		return element != nullptr && erase(element);
	}
	void clear() {
		while (first != nullptr) {
			erase(first);
		}
	}

	const T &operator[](int index) const { return at(index)->value; }
	T &operator[](int index) { return const_cast<Element *>(at(index))->value; }
	const T &get(int index) const { return (*this)[index]; }

	void move_to_back(Element *element) { move_before(element, nullptr); }
	void move_to_front(Element *element) { move_before(element, first); }
	// With no `where`, to the end.
	void move_before(Element *element, Element *where) {
		ERR_FAIL_NULL(element);
		ERR_FAIL_COND(element->owner != this || (where != nullptr && where->owner != this));
		if (element != where) {
			unlink(element);
			link_before(element, where);
		}
	}
	void reverse() {
		Element *element = first;
		while (element != nullptr) {
			Element *next = element->next_element;
			std::swap(element->next_element, element->prev_element);
			element = next;
		}
		std::swap(first, last);
	}
	void sort() { sort_custom<_DefaultComparator<T>>(); }
	// Elements keep their addresses, and equal ones their order.
	template <typename C>
	void sort_custom() {
		if (count < 2) {
			return;
		}
		List upper;
		for (int moved = count / 2; moved > 0; moved--) {
			Element *element = last;
			unlink(element);
			upper.link_before(element, upper.first);
		}
		sort_custom<C>();
		upper.template sort_custom<C>();
		merge(upper, C());
	}
	template <typename C>
	void sort_custom_inplace() {
		sort_custom<C>();
	}

	Iterator begin() { return Iterator{ first }; }
	Iterator end() { return Iterator(); }
	ConstIterator begin() const { return ConstIterator{ first }; }
	ConstIterator end() const { return ConstIterator(); }

private:
	Element *link_before(Element *element, Element *where) {
		ERR_FAIL_NULL_V(element, nullptr);
		element->owner = this;
		element->next_element = where;
		element->prev_element = where ? where->prev_element : last;
		(element->prev_element ? element->prev_element->next_element : first) = element;
		(where ? where->prev_element : last) = element;
		count++;
		return element;
	}

	void unlink(Element *element) {
		(element->prev_element ? element->prev_element->next_element : first) = element->next_element;
		(element->next_element ? element->next_element->prev_element : last) = element->prev_element;
		element->next_element = nullptr;
		element->prev_element = nullptr;
		element->owner = nullptr;
		count--;
	}

	const Element *at(int index) const {
		CRASH_BAD_INDEX(index, count);
		const Element *element = first;
		while (index-- > 0) {
			element = element->next_element;
		}
		return element;
	}

	template <typename C>
	void merge(List &upper, const C &less) {
		for (Element *element = first; element != nullptr && upper.first != nullptr;) {
			if (less(upper.first->value, element->value)) {
				Element *smaller = upper.first;
				upper.unlink(smaller);
				link_before(smaller, element);
			} else {
				element = element->next_element;
			}
		}
		take_from(upper);
	}

	void copy_from(const List &other) {
		for (const T &value : other) {
			push_back(value);
		}
	}

	void take_from(List &other) {
		while (other.first != nullptr) {
			other.first->transfer_to_back(this);
		}
	}
};

} // namespace godot

#endif // GODOT_CPP_TEMPLATES_LIST_HPP
