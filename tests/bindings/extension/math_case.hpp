// One operation of a math type, written once: compiled here, and handed to the engine as text to be worked out there on the same arguments.

#pragma once

#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/variant.hpp>

namespace bindings_test {

// Types of arguments that want a special range. The test makes random ones by these names.
using Float = float;
using Fraction = float;
using Positive = float;
using Angle = float;
using Int = int32_t;
using Count = int32_t;
using UnitVector2 = godot::Vector2;
using UnitVector3 = godot::Vector3;
using CountVector2i = godot::Vector2i;
using CountVector3i = godot::Vector3i;
using CountVector4i = godot::Vector4i;
using UnitQuaternion = godot::Quaternion;
using Rotation = godot::Basis;
using RigidTransform2D = godot::Transform2D;
using RigidTransform3D = godot::Transform3D;

struct MathCase {
	static constexpr int MAX_ARGUMENTS = 5;

	const char *expression;
	const char *types[MAX_ARGUMENTS];
	godot::Variant (*compute)(const godot::Variant *arguments);
};

godot::LocalVector<const MathCase *> all_math_cases();

// The arguments are called a, b, c, d and e. The SPELLED ones are for what C++ writes in another way than scripts.
#define MATH_1(m_a, m_expression) MATH_SPELLED_1(m_a, #m_expression, m_expression)
#define MATH_2(m_a, m_b, m_expression) MATH_SPELLED_2(m_a, m_b, #m_expression, m_expression)
#define MATH_3(m_a, m_b, m_c, m_expression) MATH_SPELLED_3(m_a, m_b, m_c, #m_expression, m_expression)
#define MATH_5(m_a, m_b, m_c, m_d, m_e, m_expression) MATH_SPELLED_5(m_a, m_b, m_c, m_d, m_e, #m_expression, m_expression)

#define MATH_SPELLED_1(m_a, m_script, m_expression)                   \
	MathCase {                                                        \
		m_script, { #m_a }, [](const Variant *arguments) -> Variant { \
			const m_a a = arguments[0];                               \
			return m_expression;                                      \
		}                                                             \
	}

#define MATH_SPELLED_2(m_a, m_b, m_script, m_expression)                    \
	MathCase {                                                              \
		m_script, { #m_a, #m_b }, [](const Variant *arguments) -> Variant { \
			const m_a a = arguments[0];                                     \
			const m_b b = arguments[1];                                     \
			return m_expression;                                            \
		}                                                                   \
	}

#define MATH_SPELLED_3(m_a, m_b, m_c, m_script, m_expression)                     \
	MathCase {                                                                    \
		m_script, { #m_a, #m_b, #m_c }, [](const Variant *arguments) -> Variant { \
			const m_a a = arguments[0];                                           \
			const m_b b = arguments[1];                                           \
			const m_c c = arguments[2];                                           \
			return m_expression;                                                  \
		}                                                                         \
	}

#define MATH_SPELLED_5(m_a, m_b, m_c, m_d, m_e, m_script, m_expression)                       \
	MathCase {                                                                                \
		m_script, { #m_a, #m_b, #m_c, #m_d, #m_e }, [](const Variant *arguments) -> Variant { \
			const m_a a = arguments[0];                                                       \
			const m_b b = arguments[1];                                                       \
			const m_c c = arguments[2];                                                       \
			const m_d d = arguments[3];                                                       \
			const m_e e = arguments[4];                                                       \
			return m_expression;                                                              \
		}                                                                                     \
	}

} // namespace bindings_test
