// What the complete bindings do not compile, ours must not compile either: sources that use it would build with ours alone.
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <gtest/gtest.h>

using namespace godot;

namespace {

// True where Operation takes such arguments.
template <typename Operation, typename... Arguments>
constexpr bool TAKES = std::is_invocable_v<Operation, Arguments...>;

constexpr auto ADD = [](auto &&a, auto &&b) -> decltype(std::declval<decltype(a)>() + std::declval<decltype(b)>()) { return a + b; };
constexpr auto DIFFERENCE = [](auto a, auto b) -> decltype(Math::angle_difference(a, b)) { return Math::angle_difference(a, b); };
constexpr auto LERP = [](auto a, auto b, auto c) -> decltype(Math::lerp(a, b, c)) { return Math::lerp(a, b, c); };

using Add = decltype(ADD);
using Difference = decltype(DIFFERENCE);
using Lerp = decltype(LERP);
using Literal = const char (&)[2];

static_assert(TAKES<Add, String, Literal> && TAKES<Add, String &, Literal> && TAKES<Add, Literal, const String &>);
static_assert(!TAKES<Add, const String &, Literal> && !TAKES<Add, StringName, Literal> && !TAKES<Add, String, int>);
static_assert(TAKES<Difference, float, float> && TAKES<Difference, double, double> && TAKES<Difference, double, int>);
static_assert(!TAKES<Difference, float, double> && !TAKES<Difference, int, int> && !TAKES<Lerp, float, float, double>);
static_assert(std::is_constructible_v<LocalVector<int>, const LocalVector<int> &>);
static_assert(!std::is_convertible_v<const LocalVector<int> &, LocalVector<int>>);

} // namespace

#if defined(Math_PI) || defined(Math_TAU) || defined(Math_INF)
#error "The complete bindings have Math::PI and the like, and no macros for them."
#endif

TEST(MathTest, AnswersWithTheTypeItIsGiven) {
	EXPECT_TRUE((std::is_same_v<decltype(Math::lerp(1.0f, 2.0f, 1)), float> && std::is_same_v<decltype(Math::lerp(0, 1, 0.5)), double>));
	EXPECT_EQ(Math::posmod(INT64_MIN, -1), 0);
}
