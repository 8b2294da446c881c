#include "container_test.hpp"

#include <godot_cpp/templates/local_vector.hpp>

#include <algorithm>
#include <random>

using namespace godot;

namespace {

class LocalVectorTest : public ContainerTest {};

LocalVector<Counted> up_to(int count) {
	LocalVector<Counted> vector;
	for (int i = 0; i < count; i++) {
		vector.push_back(Counted(i));
	}
	return vector;
}

std::vector<int> numbers_in(const LocalVector<Counted> &vector) {
	std::vector<int> numbers;
	for (const Counted &element : vector) {
		element.check();
		numbers.push_back(element.number());
	}
	return numbers;
}

struct Contrary {
	bool operator()(int, int) const { return true; }
};

} // namespace

TEST_F(LocalVectorTest, TakesAnElementOfItsOwnAsArgument) {
	LocalVector<Counted> vector = up_to(1);
	for (int i = 0; i < 20; i++) {
		vector.push_back(vector[0]);
	}
	vector.insert(1, vector[20]);
	EXPECT_EQ(numbers_in(vector), std::vector<int>(22, 0));
	EXPECT_EQ(vector.erase_multiple_unordered(vector[3]), 22u);
	EXPECT_TRUE(vector.is_empty());
}

TEST_F(LocalVectorTest, InsertsAndRemovesInPlace) {
	LocalVector<Counted> vector = up_to(5);
	vector.insert(0, Counted(10));
	vector.insert(6, Counted(11));
	vector.remove_at(2);
	EXPECT_EQ(numbers_in(vector), (std::vector<int>{ 10, 0, 2, 3, 4, 11 }));
	vector.remove_at_unordered(0);
	vector.remove_at_unordered(4);
	EXPECT_TRUE(vector.erase(Counted(0)));
	EXPECT_FALSE(vector.erase(Counted(99)));
	EXPECT_EQ(numbers_in(vector), (std::vector<int>{ 11, 2, 3 }));
	vector.remove_at(3);
	vector.insert(4, Counted(1));
	EXPECT_EQ(Counted::alive, 3);
	EXPECT_EQ(stub_host::take_errors().size(), 2u);
}

TEST_F(LocalVectorTest, ResizesBothWays) {
	LocalVector<Counted> vector;
	vector.resize(9);
	vector.resize(4);
	EXPECT_EQ(Counted::alive, 4);
	const uint32_t room = vector.get_capacity();
	vector.clear();
	EXPECT_EQ(vector.get_capacity(), room);
	vector.reset();
	EXPECT_EQ(vector.get_capacity(), 0u);
	LocalVector<int> plain;
	plain.resize(3);
	EXPECT_EQ(plain[2], 0);
}

TEST_F(LocalVectorTest, CopiesMovesAndAssigns) {
	LocalVector<Counted> vector = up_to(6);
	LocalVector<Counted> copy(vector);
	copy[0] = Counted(50);
	EXPECT_EQ(vector[0].number(), 0);
	vector = std::move(copy);
	EXPECT_EQ(vector[0].number(), 50);
	EXPECT_TRUE(copy.is_empty());
	copy = vector;
	const LocalVector<Counted> &same = copy;
	copy = same;
	EXPECT_EQ(numbers_in(copy), numbers_in(vector));
}

TEST_F(LocalVectorTest, ADestructorMayLookAtTheVector) {
	struct Nosy {
		LocalVector<Nosy> *vector = nullptr;
		uint32_t *seen = nullptr;
		~Nosy() {
			if (seen != nullptr) {
				*seen = vector->size();
			}
		}
	};
	uint32_t seen = 99;
	LocalVector<Nosy> vector;
	vector.resize(3);
	vector[2].vector = &vector;
	vector[2].seen = &seen;
	vector.pop_back();
	EXPECT_EQ(seen, 2u);
}

TEST_F(LocalVectorTest, SortsWhateverItLooksLike) {
	std::mt19937 random(5);
	for (int length : { 0, 1, 2, 16, 17, 3000 }) {
		for (int shape = 0; shape < 5; shape++) {
			LocalVector<int> numbers;
			for (int i = 0; i < length; i++) {
				// Random, ascending, descending, few values, and rising then falling.
				const int choices[] = { int(random() % 10000), i, -i, int(random() % 3), i < length / 2 ? i : length - i };
				numbers.push_back(choices[shape]);
			}
			std::vector<int> expected(numbers.begin(), numbers.end());
			std::sort(expected.begin(), expected.end());
			numbers.sort();
			ASSERT_EQ(std::vector<int>(numbers.begin(), numbers.end()), expected) << length << " of shape " << shape;
			// A comparator that contradicts itself may lose nothing.
			numbers.sort_custom<Contrary>();
			std::sort(numbers.begin(), numbers.end());
			ASSERT_EQ(std::vector<int>(numbers.begin(), numbers.end()), expected) << length << " of shape " << shape;
		}
	}
}
