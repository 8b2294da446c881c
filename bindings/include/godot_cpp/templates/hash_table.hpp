// What HashMap and HashSet have in common: nodes in a list that keeps the order of insertion, and an open-addressed index of their hashes.
// A node never moves, so pointers to its content stay good until it is erased, whatever else is inserted or erased.
#ifndef GODOT_CPP_TEMPLATES_HASH_TABLE_HPP
#define GODOT_CPP_TEMPLATES_HASH_TABLE_HPP

#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/memory.hpp>

#include <cstdint>
#include <utility>

namespace godot {
namespace internal {

template <typename TContent>
struct HashNode {
	HashNode *next = nullptr;
	HashNode *prev = nullptr;
	uint32_t hash = 0;
	TContent content;

	template <typename... Args>
	explicit HashNode(Args &&...arguments) : content(std::forward<Args>(arguments)...) {}
};

// Walks the list; `TContent` may be const.
template <typename TNode, typename TContent>
struct HashIterator {
	TNode *node = nullptr;

	HashIterator() = default;
	explicit HashIterator(TNode *at) : node(at) {}

	TContent &operator*() const { return node->content; }
	TContent *operator->() const { return node ? &node->content : nullptr; }
	HashIterator &operator++() {
		node = node ? node->next : nullptr;
		return *this;
	}
	HashIterator &operator--() {
		node = node ? node->prev : nullptr;
		return *this;
	}
	bool operator==(const HashIterator &other) const { return node == other.node; }
	bool operator!=(const HashIterator &other) const { return node != other.node; }
	explicit operator bool() const { return node != nullptr; }
	operator HashIterator<TNode, const TContent>() const { return HashIterator<TNode, const TContent>(node); }
};

// `TKeyOf::key(content)` gives the key inside a node's content.
template <typename TKey, typename TContent, typename TKeyOf, typename THasher, typename TComparator>
class HashTable {
public:
	using Node = HashNode<TContent>;
	using Iterator = HashIterator<Node, TContent>;
	using ConstIterator = HashIterator<Node, const TContent>;

	// The engine's largest table has 1,610,612,741 slots, of which three quarters may be taken.
	static constexpr uint32_t MAX_SIZE = 1207959555;
	// Small: most tables hold a few entries or none.
	static constexpr uint32_t MIN_CAPACITY = 4;

	HashTable() = default;
	HashTable(const HashTable &) = delete;
	HashTable &operator=(const HashTable &) = delete;
	~HashTable() { reset(); }

	Node *find(const TKey &key) const {
		if (count == 0) {
			return nullptr;
		}
		const uint32_t hash = THasher::hash(key);
		for (uint32_t i = home(hash);; i = next_slot(i)) {
			Node *node = slots[i].node;
			if (node == nullptr) {
				return nullptr;
			}
			if (slots[i].hash == hash && TComparator::compare(TKeyOf::key(node->content), key)) {
				return node;
			}
		}
	}

	// For a key that is not there yet. Null, after saying so, when the table can hold no more.
	template <typename... Args>
	Node *add(const TKey &key, bool at_front, Args &&...arguments) {
		if (unlikely(count >= max_taken(capacity)) && !grow()) {
			return nullptr;
		}
		// Hashed before the arguments are moved from: the key may be one of them.
		const uint32_t hash = THasher::hash(key);
		Node *node = memnew(Node(std::forward<Args>(arguments)...));
		ERR_FAIL_NULL_V(node, nullptr);
		node->hash = hash;
		link(node, at_front);
		place(node);
		count++;
		return node;
	}

	void remove(Node *node) {
		take_out_of_index(node);
		unlink(node);
		count--;
		memdelete(node);
	}

	// Keeps the room; reset gives it back.
	void clear() {
		// The nodes' contents may reach this table again while they are destroyed: it has to be empty and whole by then.
		Node *node = head;
		head = nullptr;
		tail = nullptr;
		count = 0;
		for (uint32_t i = 0; node != nullptr && i < capacity; i++) {
			slots[i] = Slot();
		}
		while (node != nullptr) {
			Node *next = node->next;
			memdelete(node);
			node = next;
		}
	}

	void reset() {
		clear();
		if (count == 0 && slots != nullptr) {
			memfree(slots);
			slots = nullptr;
			capacity = 0;
		}
	}

	void reserve(uint32_t size) {
		if (size > MAX_SIZE) {
			size = MAX_SIZE;
		}
		uint64_t wanted = MIN_CAPACITY;
		while (max_taken(wanted) < size) {
			wanted *= 2;
		}
		if (wanted > capacity) {
			rehash(wanted);
		}
	}

	// For a node whose key was changed.
	void index_again(Node *node, const TKey &key) {
		take_out_of_index(node);
		node->hash = THasher::hash(key);
		place(node);
	}

	template <typename TLess>
	void sort(const TLess &less) {
		head = merge_sorted(head, count, less);
		tail = nullptr;
		for (Node *node = head; node != nullptr; node = node->next) {
			node->prev = tail;
			tail = node;
		}
	}

	void swap(HashTable &other) {
		std::swap(slots, other.slots);
		std::swap(capacity, other.capacity);
		std::swap(count, other.count);
		std::swap(head, other.head);
		std::swap(tail, other.tail);
	}

	Node *first() const { return head; }
	Node *last() const { return tail; }
	uint32_t size() const { return count; }
	uint32_t get_capacity() const { return uint32_t(capacity); }

private:
	struct Slot {
		Node *node = nullptr;
		uint32_t hash = 0;
	};

	Slot *slots = nullptr;
	// A power of two, or 0 before the first insertion.
	uint64_t capacity = 0;
	uint32_t count = 0;
	Node *head = nullptr;
	Node *tail = nullptr;

	static constexpr uint64_t max_taken(uint64_t slot_count) {
		const uint64_t taken = slot_count - slot_count / 4;
		return taken < MAX_SIZE ? taken : MAX_SIZE;
	}

	// Hashers differ in which bits are good; the multiplication lets all of them count.
	uint32_t home(uint32_t hash) const { return uint32_t((uint64_t(hash * 2654435769u) * capacity) >> 32); }
	uint32_t next_slot(uint32_t i) const { return i + 1 == capacity ? 0 : i + 1; }

	bool grow() {
		ERR_FAIL_COND_V_MSG(count >= MAX_SIZE, false, "Hash table maximum capacity reached, aborting insertion.");
		return rehash(capacity == 0 ? uint64_t(MIN_CAPACITY) : capacity * 2);
	}

	bool rehash(uint64_t new_capacity) {
		Slot *room = static_cast<Slot *>(memalloc(sizeof(Slot) * new_capacity));
		ERR_FAIL_NULL_V_MSG(room, false, "Hash table maximum capacity reached, aborting insertion.");
		for (uint64_t i = 0; i < new_capacity; i++) {
			new (room + i) Slot();
		}
		if (slots != nullptr) {
			memfree(slots);
		}
		slots = room;
		capacity = new_capacity;
		for (Node *node = head; node != nullptr; node = node->next) {
			place(node);
		}
		return true;
	}

	void place(Node *node) {
		uint32_t i = home(node->hash);
		while (slots[i].node != nullptr) {
			i = next_slot(i);
		}
		slots[i].node = node;
		slots[i].hash = node->hash;
	}

	void take_out_of_index(const Node *node) {
		uint32_t hole = home(node->hash);
		while (slots[hole].node != node) {
			hole = next_slot(hole);
		}
		// A search stops at the first free slot, so whatever could not get its own slot because of this one moves up.
		for (uint32_t i = next_slot(hole); slots[i].node != nullptr; i = next_slot(i)) {
			const uint32_t wanted = home(slots[i].hash);
			const bool between = hole <= i ? (hole < wanted && wanted <= i) : (hole < wanted || wanted <= i);
			if (!between) {
				slots[hole] = slots[i];
				hole = i;
			}
		}
		slots[hole] = Slot();
	}

	void link(Node *node, bool at_front) {
		if (head == nullptr) {
			head = node;
			tail = node;
		} else if (at_front) {
			node->next = head;
			head->prev = node;
			head = node;
		} else {
			node->prev = tail;
			tail->next = node;
			tail = node;
		}
	}

	void unlink(Node *node) {
		(node->prev != nullptr ? node->prev->next : head) = node->next;
		(node->next != nullptr ? node->next->prev : tail) = node->prev;
	}

	// Sorts the first `length` nodes through their `next` alone; equal ones keep their order.
	template <typename TLess>
	static Node *merge_sorted(Node *from, uint32_t length, const TLess &less) {
		if (length < 2) {
			if (from != nullptr) {
				from->next = nullptr;
			}
			return from;
		}
		const uint32_t half = length / 2;
		Node *middle = from;
		for (uint32_t i = 0; i < half; i++) {
			middle = middle->next;
		}
		Node *right = merge_sorted(middle, length - half, less);
		Node *left = merge_sorted(from, half, less);
		Node *result = nullptr;
		Node **end = &result;
		while (left != nullptr && right != nullptr) {
			Node *&smaller = less(right->content, left->content) ? right : left;
			*end = smaller;
			end = &smaller->next;
			smaller = smaller->next;
		}
		*end = left != nullptr ? left : right;
		return result;
	}
};

} // namespace internal
} // namespace godot

#endif // GODOT_CPP_TEMPLATES_HASH_TABLE_HPP
