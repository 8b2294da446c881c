// A 4x4 matrix as a camera's projection, kept as columns. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_PROJECTION_HPP
#define GODOT_CPP_VARIANT_PROJECTION_HPP

#include <godot_cpp/variant/aabb.hpp>
#include <godot_cpp/variant/plane.hpp>
#include <godot_cpp/variant/rect2.hpp>
#include <godot_cpp/variant/transform3d.hpp>
#include <godot_cpp/variant/vector4.hpp>

namespace godot {

struct [[nodiscard]] Projection {
	enum Planes {
		PLANE_NEAR,
		PLANE_FAR,
		PLANE_LEFT,
		PLANE_TOP,
		PLANE_RIGHT,
		PLANE_BOTTOM,
	};

	Vector4 columns[4] = { Vector4(1, 0, 0, 0), Vector4(0, 1, 0, 0), Vector4(0, 0, 1, 0), Vector4(0, 0, 0, 1) };

	constexpr Projection() = default;
	constexpr Projection(const Vector4 &x, const Vector4 &y, const Vector4 &z, const Vector4 &w) : columns{ x, y, z, w } {}
	Projection(const Transform3D &transform);
	operator Transform3D() const;

	const Vector4 &operator[](int column) const { return columns[column]; }
	Vector4 &operator[](int column) { return columns[column]; }

	void set_identity() { *this = Projection(); }
	void set_zero() { *this = Projection(Vector4(), Vector4(), Vector4(), Vector4()); }

	static Projection create_depth_correction(bool flip_y);
	static Projection create_light_atlas_rect(const Rect2 &rect);
	static Projection create_perspective(real_t fovy_degrees, real_t aspect, real_t z_near, real_t z_far, bool flip_fov = false);
	static Projection create_perspective_hmd(
			real_t fovy_degrees, real_t aspect, real_t z_near, real_t z_far, bool flip_fov, int eye, real_t intraocular_dist, real_t convergence_dist);
	static Projection create_for_hmd(
			int eye, real_t aspect, real_t intraocular_dist, real_t display_width, real_t display_to_lens, real_t oversample, real_t z_near, real_t z_far);
	static Projection create_orthogonal(real_t left, real_t right, real_t bottom, real_t top, real_t z_near, real_t z_far);
	static Projection create_orthogonal_aspect(real_t size, real_t aspect, real_t z_near, real_t z_far, bool flip_fov = false);
	static Projection create_frustum(real_t left, real_t right, real_t bottom, real_t top, real_t z_near, real_t z_far);
	static Projection create_frustum_aspect(real_t size, real_t aspect, const Vector2 &offset, real_t z_near, real_t z_far, bool flip_fov = false);
	static Projection create_fit_aabb(const AABB &box);
	static real_t get_fovy(real_t fovx, real_t aspect);

	real_t determinant() const;
	void invert() { *this = inverse(); }
	Projection inverse() const;
	Projection perspective_znear_adjusted(real_t new_znear) const;
	Plane get_projection_plane(Planes plane) const;
	Projection flipped_y() const;
	Projection jitter_offseted(const Vector2 &offset) const;
	real_t get_z_far() const;
	real_t get_z_near() const;
	real_t get_aspect() const;
	real_t get_fov() const;
	bool is_orthogonal() const;
	Vector2 get_viewport_half_extents() const;
	Vector2 get_far_plane_half_extents() const;
	int get_pixels_per_meter(int for_pixel_width) const;
	real_t get_lod_multiplier() const;

	Vector3 xform(const Vector3 &v) const;
	Vector4 xform(const Vector4 &v) const;
	Vector4 xform_inv(const Vector4 &v) const;
	Plane xform4(const Plane &plane) const;

	bool is_same(const Projection &projection) const;
	bool operator==(const Projection &projection) const;
	bool operator!=(const Projection &projection) const { return !(*this == projection); }
	Projection operator*(const Projection &projection) const;

	explicit operator String() const;
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_PROJECTION_HPP
