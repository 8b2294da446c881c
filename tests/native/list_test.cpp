#include "container_test.hpp"

#include <godot_cpp/templates/list.hpp>

#include <random>
#include <vector>

using namespace godot;

namespace {

class ListTest : public ContainerTest {};

// Read in both directions, so that a link forgotten on one side shows.
std::vector<int> numbers_in(const List<Counted> &list) {
	std::vector<int> forward;
	for (const Counted &element : list) {
		forward.push_back(element.number());
	}
	std::vector<int> backward;
	for (const List<Counted>::Element *element = list.back(); element != nullptr; element = element->prev()) {
		backward.insert(backward.begin(), element->get().number());
	}
	EXPECT_EQ(forward, backward);
	EXPECT_EQ(int(forward.size()), list.size());
	return forward;
}

struct ByTens {
	bool operator()(const Counted &a, const Counted &b) const { return a.number() / 10 < b.number() / 10; }
};

} // namespace

TEST_F(ListTest, LinksAtBothEndsAndInBetween) {
	List<Counted> list;
	List<Counted>::Element *middle = list.push_back(2);
	list.push_back(4);
	list.push_front(1);
	list.insert_after(middle, 3);
	list.insert_before(middle, 9);
	EXPECT_EQ(numbers_in(list), (std::vector<int>{ 1, 9, 2, 3, 4 }));
	list.move_to_front(middle);
	list.move_to_back(list.find(9));
	EXPECT_EQ(numbers_in(list), (std::vector<int>{ 2, 1, 3, 4, 9 }));
	list.pop_front();
	list.pop_back();
	list.reverse();
	EXPECT_EQ(numbers_in(list), (std::vector<int>{ 4, 3, 1 }));
	EXPECT_EQ(list[1].number(), 3);
}

TEST_F(ListTest, ErasesTheElementThatALoopIsAt) {
	List<Counted> list;
	for (int i = 0; i < 10; i++) {
		list.push_back(i);
	}
	for (List<Counted>::Element *element = list.front(); element != nullptr;) {
		List<Counted>::Element *next = element->next();
		if (element->get().number() % 2 == 0) {
			element->erase();
		}
		element = next;
	}
	EXPECT_EQ(numbers_in(list), (std::vector<int>{ 1, 3, 5, 7, 9 }));
}

TEST_F(ListTest, RefusesAnElementOfAnotherList) {
	List<Counted> list = { 1 };
	List<Counted> other = { 2 };
	EXPECT_FALSE(list.erase(other.front()));
	EXPECT_EQ(list.insert_after(other.front(), 3), nullptr);
	list.move_to_back(other.front());
	EXPECT_EQ(stub_host::take_errors().size(), 3u);
	EXPECT_EQ(numbers_in(list), std::vector<int>{ 1 });
	EXPECT_EQ(numbers_in(other), std::vector<int>{ 2 });
}

TEST_F(ListTest, SortsStablyAndKeepsElements) {
	List<Counted> list;
	std::mt19937 random(3);
	for (int i = 0; i < 300; i++) {
		list.push_back(int(random() % 1000));
	}
	std::vector<int> expected = numbers_in(list);
	std::stable_sort(expected.begin(), expected.end(), [](int a, int b) { return a / 10 < b / 10; });
	const Counted *element = &list[17];
	const int number = element->number();
	list.sort_custom<ByTens>();
	EXPECT_EQ(numbers_in(list), expected);
	EXPECT_EQ(element->number(), number);
	list.front()->erase();
	EXPECT_EQ(list.size(), 299);
}

TEST_F(ListTest, CopiesAndMoves) {
	List<Counted> list = { 1, 2, 3 };
	List<Counted> copy = list;
	List<Counted>::Element *second = list.front()->next();
	List<Counted> moved = std::move(list);
	EXPECT_TRUE(list.is_empty());
	// An element goes with its list.
	second->erase();
	EXPECT_EQ(numbers_in(moved), (std::vector<int>{ 1, 3 }));
	EXPECT_EQ(numbers_in(copy), (std::vector<int>{ 1, 2, 3 }));
	copy = moved;
	EXPECT_EQ(numbers_in(copy), (std::vector<int>{ 1, 3 }));
}
