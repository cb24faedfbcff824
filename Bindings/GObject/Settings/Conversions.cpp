#include "Settings/Conversions.h"

#include <array>
#include <cstddef>
#include <memory>
#include <utility>

#include "Support/Properties.h"

namespace tavo::gobject {

namespace {

// What a key of the library is called in the C interface.
constexpr std::array<std::pair<std::string_view, const char*>, 10> actionKeys{{
    {parameterKeys::commandUrl, "url"},
    {parameterKeys::mailRecipient, "recipient"},
    {parameterKeys::mailSubject, "subject"},
    {parameterKeys::mailBody, "body"},
    {parameterKeys::startDate, "start"},
    {parameterKeys::endDate, "end"},
    {parameterKeys::description, "description"},
    {parameterKeys::summary, "summary"},
    {parameterKeys::location, "location"},
    {parameterKeys::reminder, "reminder"},
}};

// Words of an ad may be any bytes; a variant holds valid text only.
GVariant* textVariant(const std::string& text) {
  return g_variant_new_take_string(g_utf8_make_valid(text.c_str(), -1));
}

GVariant* valueVariant(const std::variant<std::string, Url, Date>& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return textVariant(*text);
  if (const auto* url = std::get_if<Url>(&value)) return textVariant(url->text());
  return g_variant_new_int64(std::chrono::system_clock::to_time_t(std::get<Date>(value)));
}

std::uint8_t unmultiplied(unsigned component, unsigned alpha) {
  constexpr unsigned full = 255;
  return static_cast<std::uint8_t>(
      alpha == 0 ? 0 : std::min(full, (component * full + alpha / 2) / alpha));
}

}  // namespace

GVariant* variantOf(const std::map<std::string, std::string>& keywords) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a{ss}"));
  for (const auto& [key, value] : keywords) {
    g_variant_builder_add(&builder, "{@s@s}", textVariant(key), textVariant(value));
  }
  return g_variant_builder_end(&builder);
}

std::map<std::string, std::string> keywordsOf(GVariant* variant) {
  std::map<std::string, std::string> keywords;
  if (variant == nullptr) return keywords;
  GVariantIter entries;
  g_variant_iter_init(&entries, variant);
  const char* key = nullptr;
  const char* value = nullptr;
  while (g_variant_iter_next(&entries, "{&s&s}", &key, &value)) keywords[key] = value;
  return keywords;
}

GVariant* variantOf(const std::optional<Location>& location) {
  if (!location) return nullptr;
  return g_variant_new("(ddd)", location->latitude, location->longitude,
                       location->horizontalAccuracy);
}

std::optional<Location> locationOf(GVariant* variant) {
  if (variant == nullptr) return std::nullopt;
  Location location;
  g_variant_get(variant, "(ddd)", &location.latitude, &location.longitude,
                &location.horizontalAccuracy);
  return location;
}

GVariant* variantOf(const ClickToActionParameters& parameters) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
  for (const auto& [key, name] : actionKeys) {
    const auto found = parameters.find(key);
    if (found == parameters.end()) continue;
    g_variant_builder_add(&builder, "{sv}", name, valueVariant(found->second));
  }
  return g_variant_builder_end(&builder);
}

ClickToActionParameters parametersOf(GVariant* variant) {
  ClickToActionParameters parameters;
  if (variant == nullptr) return parameters;
  for (const auto& [key, name] : actionKeys) {
    g_autoptr(GVariant) value = g_variant_lookup_value(variant, name, nullptr);
    if (value == nullptr) continue;
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_INT64)) {
      parameters[std::string{key}] =
          std::chrono::system_clock::from_time_t(g_variant_get_int64(value));
    } else if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING)) {
      const std::string text = g_variant_get_string(value, nullptr);
      if (key == parameterKeys::commandUrl) {
        parameters[std::string{key}] = Url::fromText(text);
      } else {
        parameters[std::string{key}] = text;
      }
    }
  }
  return parameters;
}

// The toolkit's pixels are BGRA with alpha multiplied in.
Image imageOf(GdkTexture* texture) {
  if (texture == nullptr) return {};
  const int width = gdk_texture_get_width(texture);
  const int height = gdk_texture_get_height(texture);
  const auto stride = static_cast<std::size_t>(width) * 4;
  const std::size_t size = stride * static_cast<std::size_t>(height);
  const std::shared_ptr<std::uint8_t[]> pixels{new std::uint8_t[size]};
  gdk_texture_download(texture, pixels.get(), stride);
  for (std::size_t at = 0; at < size; at += 4) {
    std::uint8_t* const pixel = pixels.get() + at;
    guint32 packed = 0;  // ARGB in the machine's order
    std::copy(pixel, pixel + sizeof packed, reinterpret_cast<std::uint8_t*>(&packed));
    const unsigned alpha = packed >> 24U;
    pixel[0] = unmultiplied((packed >> 16U) & 0xFFU, alpha);
    pixel[1] = unmultiplied((packed >> 8U) & 0xFFU, alpha);
    pixel[2] = unmultiplied(packed & 0xFFU, alpha);
    pixel[3] = static_cast<std::uint8_t>(alpha);
  }
  return Image{width, height, stride, Image::Pixels{pixels, pixels.get()}};
}

}  // namespace tavo::gobject
