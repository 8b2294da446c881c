#include <godot_cpp/variant/color.hpp>

#include "math_checks.hpp"

#include <godot_cpp/core/builtin_ptrcall.hpp>
#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/variant/string_name.hpp>

namespace godot {

namespace {

// Names, HTML codes and the OK HSL space are the engine's own tables and curves; a colour is rarely read that way, so it is asked.

template <typename R, typename... Args>
R ask_engine(GDExtensionPtrBuiltInMethod method, const Args *...arguments) {
	const GDExtensionConstTypePtr pointers[] = { arguments... };
	return internal::call_builtin<R>(method, nullptr, pointers);
}

GDExtensionPtrBuiltInMethod color_method(const char *name, int64_t hash) {
	return internal::find_builtin_method(GDEXTENSION_VARIANT_TYPE_COLOR, name, hash);
}

float ok_hsl_part(GDExtensionPtrGetter getter, const Color *color) {
	double part = 0;
	if (getter != nullptr) {
		getter(color, &part);
	}
	return float(part);
}

GDExtensionPtrGetter color_getter(const char *name) {
	const StringName member(name);
	return gdextension_interface::variant_get_ptr_getter(GDEXTENSION_VARIANT_TYPE_COLOR, &member);
}

// The hue is a position on the way round the six corners of the colour wheel.
Color on_wheel(float hue, float low, float high, float rising, float falling, float alpha) {
	switch (int(hue)) {
		case 0:
			return Color(high, rising, low, alpha);
		case 1:
			return Color(falling, high, low, alpha);
		case 2:
			return Color(low, high, rising, alpha);
		case 3:
			return Color(low, falling, high, alpha);
		case 4:
			return Color(rising, low, high, alpha);
		default:
			return Color(high, low, falling, alpha);
	}
}

} // namespace

Color::Color(const String &code) : Color() {
	static const GDExtensionPtrConstructor constructor = internal::find_builtin_constructor(GDEXTENSION_VARIANT_TYPE_COLOR, 5);
	internal::construct_builtin(constructor, this, { &code });
}

Color::Color(const String &code, float alpha) : Color(code) {
	a = alpha;
}

Color::Color(const char *code) : Color(String(code)) {}

String Color::to_html(bool with_alpha) const {
	static const GDExtensionPtrBuiltInMethod method = color_method("to_html", 3429816538);
	const GDExtensionBool alpha = with_alpha;
	return internal::call_builtin<String>(method, this, { &alpha });
}

Color Color::hex(uint32_t rgba) {
	return Color(float((rgba >> 24) & 0xFF) / 255.0f, float((rgba >> 16) & 0xFF) / 255.0f, float((rgba >> 8) & 0xFF) / 255.0f, float(rgba & 0xFF) / 255.0f);
}

Color Color::hex64(uint64_t rgba) {
	return Color(float((rgba >> 48) & 0xFFFF) / 65535.0f, float((rgba >> 32) & 0xFFFF) / 65535.0f, float((rgba >> 16) & 0xFFFF) / 65535.0f,
			float(rgba & 0xFFFF) / 65535.0f);
}

Color Color::html(const String &rgba) {
	static const GDExtensionPtrBuiltInMethod method = color_method("html", 2500054655);
	return ask_engine<Color>(method, &rgba);
}

bool Color::html_is_valid(const String &code) {
	static const GDExtensionPtrBuiltInMethod method = color_method("html_is_valid", 2942997125);
	return ask_engine<GDExtensionBool>(method, &code);
}

Color Color::named(const String &name) {
	// No colour has a negative alpha: this one says that the name was not found.
	const Color unknown(0, 0, 0, -1);
	const Color color = named(name, unknown);
	ERR_FAIL_COND_V_MSG(color == unknown, Color(), String("Invalid color name: ") + name + String("."));
	return color;
}

Color Color::named(const String &name, const Color &fallback) {
	// The engine looks for a code first; "fade" is one, and a name it is not.
	return html_is_valid(name) ? fallback : from_string(name, fallback);
}

Color Color::from_string(const String &code, const Color &fallback) {
	static const GDExtensionPtrBuiltInMethod method = color_method("from_string", 3755044230);
	return ask_engine<Color>(method, &code, &fallback);
}

Color Color::from_hsv(float hue, float saturation, float value, float alpha) {
	if (saturation == 0.0f) {
		return Color(value, value, value, alpha);
	}
	hue = Math::fmod(hue * 6.0f, 6.0f);
	if (hue < 0) {
		hue += 6.0f;
	}
	const float part = hue - Math::floor(hue);
	return on_wheel(hue, value * (1.0f - saturation), value, value * (1.0f - saturation * (1.0f - part)), value * (1.0f - saturation * part), alpha);
}

Color Color::from_ok_hsl(float hue, float saturation, float lightness, float alpha) {
	static const GDExtensionPtrBuiltInMethod method = color_method("from_ok_hsl", 1573799446);
	const double parts[4] = { hue, saturation, lightness, alpha };
	return ask_engine<Color>(method, &parts[0], &parts[1], &parts[2], &parts[3]);
}

Color Color::from_rgbe9995(uint32_t rgbe) {
	// Three mantissas of nine bits share the exponent in the top five.
	const float scale = Math::pow(2.0f, float(int(rgbe >> 27) - 15 - 9));
	return Color(float(rgbe & 0x1ff) * scale, float((rgbe >> 9) & 0x1ff) * scale, float((rgbe >> 18) & 0x1ff) * scale, 1.0f);
}

Color Color::from_rgba8(int64_t r8, int64_t g8, int64_t b8, int64_t a8) {
	return Color(float(r8) / 255.0f, float(g8) / 255.0f, float(b8) / 255.0f, float(a8) / 255.0f);
}

float Color::get_h() const {
	const float high = get_v();
	const float range = high - MIN(MIN(r, g), b);
	if (range == 0.0f) {
		return 0.0f;
	}
	float hue;
	if (r == high) {
		hue = (g - b) / range;
	} else if (g == high) {
		hue = 2 + (b - r) / range;
	} else {
		hue = 4 + (r - g) / range;
	}
	hue /= 6.0f;
	return hue < 0.0f ? hue + 1.0f : hue;
}

float Color::get_s() const {
	const float high = get_v();
	return high != 0.0f ? (high - MIN(MIN(r, g), b)) / high : 0.0f;
}

float Color::get_ok_hsl_h() const {
	static const GDExtensionPtrGetter getter = color_getter("ok_hsl_h");
	return ok_hsl_part(getter, this);
}

float Color::get_ok_hsl_s() const {
	static const GDExtensionPtrGetter getter = color_getter("ok_hsl_s");
	return ok_hsl_part(getter, this);
}

float Color::get_ok_hsl_l() const {
	static const GDExtensionPtrGetter getter = color_getter("ok_hsl_l");
	return ok_hsl_part(getter, this);
}

Color Color::blend(const Color &over) const {
	const float rest = 1.0f - over.a;
	const float alpha = a * rest + over.a;
	if (alpha == 0) {
		return Color(0, 0, 0, 0);
	}
	return Color((r * a * rest + over.r * over.a) / alpha, (g * a * rest + over.g * over.a) / alpha, (b * a * rest + over.b * over.a) / alpha, alpha);
}

Color Color::srgb_to_linear() const {
	const auto linear = [](float c) { return c < 0.04045f ? c * (1.0f / 12.92f) : Math::pow(float((c + 0.055) * (1.0 / (1.0 + 0.055))), 2.4f); };
	return Color(linear(r), linear(g), linear(b), a);
}

Color Color::linear_to_srgb() const {
	const auto encoded = [](float c) { return c < 0.0031308f ? 12.92f * c : float((1.0 + 0.055) * Math::pow(c, 1.0f / 2.4f) - 0.055); };
	return Color(encoded(r), encoded(g), encoded(b), a);
}

bool Color::is_equal_approx(const Color &to) const {
	return Math::is_equal_approx(r, to.r) && Math::is_equal_approx(g, to.g) && Math::is_equal_approx(b, to.b) && Math::is_equal_approx(a, to.a);
}

bool Color::is_same(const Color &to) const {
	return Math::is_same(r, to.r) && Math::is_same(g, to.g) && Math::is_same(b, to.b) && Math::is_same(a, to.a);
}

bool Color::operator<(const Color &to) const {
	for (int i = 0; i < 3; i++) {
		if (components[i] != to.components[i]) {
			return components[i] < to.components[i];
		}
	}
	return a < to.a;
}

uint32_t Color::_pack32(float first, float second, float third, float fourth) {
	const auto byte = [](float c) { return uint32_t(uint8_t(int64_t(Math::round(c * 255.0f)))); };
	return (byte(first) << 24) | (byte(second) << 16) | (byte(third) << 8) | byte(fourth);
}

uint64_t Color::_pack64(float first, float second, float third, float fourth) {
	const auto word = [](float c) { return uint64_t(uint16_t(int64_t(Math::round(c * 65535.0f)))); };
	return (word(first) << 48) | (word(second) << 32) | (word(third) << 16) | word(fourth);
}

Color::operator String() const {
	return String(Variant(*this));
}

} // namespace godot
