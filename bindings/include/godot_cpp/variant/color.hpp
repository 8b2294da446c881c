// A colour: red, green, blue and alpha as floats, not limited to 0..1. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_COLOR_HPP
#define GODOT_CPP_VARIANT_COLOR_HPP

#include <godot_cpp/core/math.hpp>

namespace godot {

class String;

struct [[nodiscard]] Color {
	union {
		_UNNAMED_MEMBERS_ struct {
			float r;
			float g;
			float b;
			float a;
		};
		float components[4];
	};

	constexpr Color() : r(0), g(0), b(0), a(1) {}
	constexpr Color(float red, float green, float blue, float alpha = 1) : r(red), g(green), b(blue), a(alpha) {}
	constexpr Color(const Color &color, float alpha) : r(color.r), g(color.g), b(color.b), a(alpha) {}
	// An HTML code or a colour's name; a string that is neither is reported, and gives black.
	Color(const String &code);
	Color(const String &code, float alpha);
	Color(const char *code);

	_FORCE_INLINE_ float &operator[](int index) { return components[index]; }
	_FORCE_INLINE_ const float &operator[](int index) const { return components[index]; }

	uint32_t to_argb32() const { return _pack32(a, r, g, b); }
	uint32_t to_abgr32() const { return _pack32(a, b, g, r); }
	uint32_t to_rgba32() const { return _pack32(r, g, b, a); }
	uint64_t to_argb64() const { return _pack64(a, r, g, b); }
	uint64_t to_abgr64() const { return _pack64(a, b, g, r); }
	uint64_t to_rgba64() const { return _pack64(r, g, b, a); }
	String to_html(bool with_alpha = true) const;

	static Color hex(uint32_t rgba);
	static Color hex64(uint64_t rgba);
	static Color html(const String &rgba);
	static bool html_is_valid(const String &code);
	static Color named(const String &name);
	static Color named(const String &name, const Color &fallback);
	static Color from_string(const String &code, const Color &fallback);
	static Color from_hsv(float hue, float saturation, float value, float alpha = 1);
	static Color from_ok_hsl(float hue, float saturation, float lightness, float alpha = 1);
	static Color from_rgbe9995(uint32_t rgbe);
	static Color from_rgba8(int64_t r8, int64_t g8, int64_t b8, int64_t a8 = 255);

	float get_h() const;
	float get_s() const;
	float get_v() const { return MAX(MAX(r, g), b); }
	void set_hsv(float hue, float saturation, float value, float alpha = 1) { *this = from_hsv(hue, saturation, value, alpha); }
	void set_h(float hue) { set_hsv(hue, get_s(), get_v(), a); }
	void set_s(float saturation) { set_hsv(get_h(), saturation, get_v(), a); }
	void set_v(float value) { set_hsv(get_h(), get_s(), value, a); }
	float get_ok_hsl_h() const;
	float get_ok_hsl_s() const;
	float get_ok_hsl_l() const;
	void set_ok_hsl(float hue, float saturation, float lightness, float alpha = 1) { *this = from_ok_hsl(hue, saturation, lightness, alpha); }
	void set_ok_hsl_h(float hue) { set_ok_hsl(hue, get_ok_hsl_s(), get_ok_hsl_l(), a); }
	void set_ok_hsl_s(float saturation) { set_ok_hsl(get_ok_hsl_h(), saturation, get_ok_hsl_l(), a); }
	void set_ok_hsl_l(float lightness) { set_ok_hsl(get_ok_hsl_h(), get_ok_hsl_s(), lightness, a); }
	void set_r8(int32_t value) { r = _from8(value); }
	void set_g8(int32_t value) { g = _from8(value); }
	void set_b8(int32_t value) { b = _from8(value); }
	void set_a8(int32_t value) { a = _from8(value); }
	int32_t get_r8() const { return _to8(r); }
	int32_t get_g8() const { return _to8(g); }
	int32_t get_b8() const { return _to8(b); }
	int32_t get_a8() const { return _to8(a); }

	Color clamp(const Color &low = Color(0, 0, 0, 0), const Color &high = Color(1, 1, 1, 1)) const {
		return Color(CLAMP(r, low.r, high.r), CLAMP(g, low.g, high.g), CLAMP(b, low.b, high.b), CLAMP(a, low.a, high.a));
	}
	void invert() { *this = inverted(); }
	constexpr Color inverted() const { return Color(1.0f - r, 1.0f - g, 1.0f - b, a); }
	constexpr Color lerp(const Color &to, float weight) const {
		return Color(Math::lerp(r, to.r, weight), Math::lerp(g, to.g, weight), Math::lerp(b, to.b, weight), Math::lerp(a, to.a, weight));
	}
	constexpr Color lightened(float amount) const { return Color(r + (1.0f - r) * amount, g + (1.0f - g) * amount, b + (1.0f - b) * amount, a); }
	constexpr Color darkened(float amount) const { return Color(r * (1.0f - amount), g * (1.0f - amount), b * (1.0f - amount), a); }
	Color blend(const Color &over) const;
	constexpr float get_luminance() const { return 0.2126f * r + 0.7152f * g + 0.0722f * b; }
	Color srgb_to_linear() const;
	Color linear_to_srgb() const;

	bool is_equal_approx(const Color &to) const;
	bool is_same(const Color &to) const;
	bool operator==(const Color &to) const { return r == to.r && g == to.g && b == to.b && a == to.a; }
	bool operator!=(const Color &to) const { return !(*this == to); }
	bool operator<(const Color &to) const;

	constexpr Color operator+(const Color &c) const { return Color(r + c.r, g + c.g, b + c.b, a + c.a); }
	constexpr Color operator-(const Color &c) const { return Color(r - c.r, g - c.g, b - c.b, a - c.a); }
	constexpr Color operator*(const Color &c) const { return Color(r * c.r, g * c.g, b * c.b, a * c.a); }
	constexpr Color operator/(const Color &c) const { return Color(r / c.r, g / c.g, b / c.b, a / c.a); }
	constexpr Color operator*(float scalar) const { return Color(r * scalar, g * scalar, b * scalar, a * scalar); }
	constexpr Color operator/(float scalar) const { return Color(r / scalar, g / scalar, b / scalar, a / scalar); }
	constexpr Color operator-() const { return Color(1.0f - r, 1.0f - g, 1.0f - b, 1.0f - a); }
	void operator+=(const Color &c) { *this = *this + c; }
	void operator-=(const Color &c) { *this = *this - c; }
	void operator*=(const Color &c) { *this = *this * c; }
	void operator/=(const Color &c) { *this = *this / c; }
	void operator*=(float scalar) { *this = *this * scalar; }
	void operator/=(float scalar) { *this = *this / scalar; }
	friend constexpr Color operator*(float scalar, const Color &c) { return c * scalar; }

	explicit operator String() const;

private:
	static constexpr float _from8(int32_t value) { return float(CLAMP(value, 0, 255)) / 255.0f; }
	static int32_t _to8(float value) { return int32_t(CLAMP(Math::round(value * 255.0f), 0.0f, 255.0f)); }
	static uint32_t _pack32(float first, float second, float third, float fourth);
	static uint64_t _pack64(float first, float second, float third, float fourth);
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_COLOR_HPP
