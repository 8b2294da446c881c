#include "container_test.hpp"

#include <godot_cpp/templates/vector.hpp>

#include <thread>
#include <vector>

using namespace godot;

namespace {

class VectorTest : public ContainerTest {};

std::vector<int> numbers_in(const Vector<Counted> &vector) {
	std::vector<int> numbers;
	for (const Counted &element : vector) {
		numbers.push_back(element.number());
	}
	return numbers;
}

} // namespace

TEST_F(VectorTest, SharesUntilItIsChanged) {
	Vector<Counted> first = { 1, 2, 3 };
	Vector<Counted> second = first;
	EXPECT_EQ(first.ptr(), second.ptr());
	EXPECT_EQ(Counted::alive, 3);
	second.write[1] = Counted(9);
	EXPECT_NE(first.ptr(), second.ptr());
	EXPECT_EQ(numbers_in(first), (std::vector<int>{ 1, 2, 3 }));
	EXPECT_EQ(numbers_in(second), (std::vector<int>{ 1, 9, 3 }));
	const Counted *alone = second.ptr();
	second.set(0, Counted(8));
	EXPECT_EQ(second.ptr(), alone);
}

TEST_F(VectorTest, EveryChangeLeavesTheOtherCopyAlone) {
	const Vector<Counted> original = { 3, 1, 2 };
	const std::vector<int> before = { 3, 1, 2 };
	Vector<Counted> copy = original;
	copy.push_back(4);
	EXPECT_EQ(numbers_in(original), before);
	copy = original;
	copy.remove_at(0);
	EXPECT_EQ(numbers_in(copy), (std::vector<int>{ 1, 2 }));
	EXPECT_EQ(numbers_in(original), before);
	copy = original;
	copy.insert(1, 7);
	EXPECT_EQ(numbers_in(copy), (std::vector<int>{ 3, 7, 1, 2 }));
	copy = original;
	copy.resize(1);
	copy.resize(2);
	EXPECT_EQ(numbers_in(copy), (std::vector<int>{ 3, 0 }));
	copy = original;
	copy.sort();
	EXPECT_EQ(numbers_in(copy), (std::vector<int>{ 1, 2, 3 }));
	copy = original;
	copy.reverse();
	copy.fill(copy[1]);
	EXPECT_EQ(numbers_in(copy), (std::vector<int>{ 1, 1, 1 }));
	copy = original;
	copy.clear();
	EXPECT_EQ(numbers_in(original), before);
}

TEST_F(VectorTest, TakesAnElementOfItsOwnAsArgument) {
	Vector<Counted> vector = { 5 };
	for (int i = 0; i < 40; i++) {
		vector.push_back(vector[0]);
	}
	const Vector<Counted> shared = vector;
	vector.set(1, shared[0]);
	vector.append_array(vector);
	EXPECT_EQ(numbers_in(vector), std::vector<int>(82, 5));
	EXPECT_EQ(shared.size(), 41);
}

TEST_F(VectorTest, FindsSlicesAndCompares) {
	const Vector<Counted> vector = { 1, 2, 3, 2 };
	EXPECT_EQ(vector.find(2), 1);
	EXPECT_EQ(vector.find(2, 2), 3);
	EXPECT_EQ(vector.rfind(2), 3);
	EXPECT_EQ(vector.rfind(2, -2), 1);
	EXPECT_EQ(vector.count(2), 2);
	EXPECT_EQ(numbers_in(vector.slice(1, -1)), (std::vector<int>{ 2, 3 }));
	EXPECT_EQ(vector.slice(0), vector);
	EXPECT_EQ((Vector<Counted>{ 1, 3, 3, 5 }.bsearch(3, true)), 1);
	EXPECT_EQ((Vector<Counted>{ 1, 3, 3, 5 }.bsearch(3, false)), 3);
}

TEST_F(VectorTest, ReportsWhatItCannotDo) {
	Vector<Counted> vector = { 1 };
	vector.remove_at(1);
	vector.set(-1, 1);
	EXPECT_NE(vector.insert(2, 1), OK);
	EXPECT_NE(vector.resize(-1), OK);
	EXPECT_NE(vector.resize(INT64_MAX), OK);
	EXPECT_EQ(vector.size(), 1);
	EXPECT_EQ(stub_host::take_errors().size(), 5u);
}

TEST_F(VectorTest, CountsItsUsersAcrossThreads) {
	Vector<int> shared = { 1, 2, 3 };
	const auto use = [shared]() {
		for (int i = 0; i < 20000; i++) {
			const Vector<int> copy = shared;
			ASSERT_EQ(copy[2], 3);
		}
	};
	std::thread one(use);
	std::thread two(use);
	one.join();
	two.join();
}
