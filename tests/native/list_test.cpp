#include "container_test.hpp"

#include <godot_cpp/templates/list.hpp>

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
	return forward;
}

} // namespace

TEST_F(ListTest, LinksElementsThatGoWithTheirListAndWithNoOther) {
	List<Counted> list = { 2, 4 };
	list.push_front(1);
	List<Counted>::Element *second = list.front()->next();
	list.insert_after(second, 3);
	list.insert_before(second, 9);
	list.move_to_back(list.find(9));
	EXPECT_EQ(numbers_in(list), (std::vector<int>{ 1, 2, 3, 4, 9 }));
	List<Counted> copy(list);
	EXPECT_FALSE(copy.erase(second));
	EXPECT_EQ(stub_host::take_errors().size(), 1u);
	List<Counted> moved = std::move(list);
	EXPECT_TRUE(list.is_empty());
	second->erase();
	moved.pop_back();
	EXPECT_EQ(numbers_in(moved), (std::vector<int>{ 1, 3, 4 }));
	EXPECT_EQ(copy.size(), 5);
}
