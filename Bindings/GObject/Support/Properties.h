#pragma once

#include <glib-object.h>

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>

#include <tavo/Date.h>

namespace tavo::gobject {

// The text of a C string that may be null.
[[nodiscard]] inline std::string textOf(const char* text) { return text == nullptr ? "" : text; }

// A property of a GObject class whose value is a field of a C++ record. A class has a table of
// them; their ids are the places in the table, from 1.
template <typename Record>
struct Property {
  const char* name;
  double least;  // for numbers
  double most;
  GType (*enumeration)();  // for enumerations
  GParamSpec* (*pspec)(const Property& self, const Record& defaults);
  void (*get)(const Record& record, GValue* value);
  bool (*set)(Record& record, const GValue* value);  // whether it has another value now
};

inline constexpr auto propertyFlags =
    static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS | G_PARAM_EXPLICIT_NOTIFY);
inline constexpr auto readOnlyFlags =
    static_cast<GParamFlags>(G_PARAM_READABLE | G_PARAM_STATIC_STRINGS);

template <typename Member>
struct MemberOf;
template <typename RecordType, typename FieldType>
struct MemberOf<FieldType RecordType::*> {
  using Record = RecordType;
  using Field = FieldType;
};

template <typename Field>
inline constexpr bool isReal = std::is_floating_point_v<Field> || std::is_same_v<Field, Seconds>;
template <typename Field>
inline constexpr bool isText =
    std::is_same_v<Field, std::string> || std::is_same_v<Field, std::optional<std::string>>;

// Where nobody has decided, the number -1; else 0 or 1.
template <typename Field>
inline constexpr bool isOpenSwitch = std::is_same_v<Field, std::optional<bool>>;

template <typename Field>
double realOf(const Field& field) {
  if constexpr (std::is_same_v<Field, Seconds>) {
    return field.count();
  } else {
    return static_cast<double>(field);
  }
}

template <typename Field>
const char* textOrNull(const Field& field) {
  if constexpr (std::is_same_v<Field, std::string>) {
    return field.c_str();
  } else {
    return field ? field->c_str() : nullptr;
  }
}

template <typename Record, typename Field>
GParamSpec* pspecOf(const Property<Record>& self, const Field& value) {
  [[maybe_unused]] const auto bound = [](double number) {
    using Number = std::conditional_t<std::is_arithmetic_v<Field>, Field, double>;
    return static_cast<Number>(number);
  };
  if constexpr (std::is_same_v<Field, bool>) {
    return g_param_spec_boolean(self.name, nullptr, nullptr, value ? TRUE : FALSE, propertyFlags);
  } else if constexpr (isOpenSwitch<Field>) {
    return g_param_spec_int(self.name, nullptr, nullptr, -1, 1, value ? int{*value} : -1,
                            propertyFlags);
  } else if constexpr (isText<Field>) {
    return g_param_spec_string(self.name, nullptr, nullptr, textOrNull(value), propertyFlags);
  } else if constexpr (isReal<Field>) {
    return g_param_spec_double(self.name, nullptr, nullptr, self.least, self.most, realOf(value),
                               propertyFlags);
  } else if constexpr (std::is_same_v<Field, unsigned> || std::is_enum_v<Field>) {
    return g_param_spec_enum(self.name, nullptr, nullptr, self.enumeration(),
                             static_cast<int>(value), propertyFlags);
  } else if constexpr (std::is_same_v<Field, std::size_t>) {
    return g_param_spec_uint64(self.name, nullptr, nullptr, bound(self.least), bound(self.most),
                               value, propertyFlags);
  } else if constexpr (std::is_same_v<Field, std::int64_t>) {
    if (self.enumeration != nullptr) {
      return g_param_spec_enum(self.name, nullptr, nullptr, self.enumeration(),
                               static_cast<int>(value), propertyFlags);
    }
    return g_param_spec_int64(self.name, nullptr, nullptr, bound(self.least), bound(self.most),
                              value, propertyFlags);
  } else {
    return g_param_spec_int(self.name, nullptr, nullptr, bound(self.least), bound(self.most), value,
                            propertyFlags);
  }
}

template <typename Field>
void readField(const Field& field, GValue* value) {
  if constexpr (std::is_same_v<Field, bool>) {
    g_value_set_boolean(value, field ? TRUE : FALSE);
  } else if constexpr (isOpenSwitch<Field>) {
    g_value_set_int(value, field ? int{*field} : -1);
  } else if constexpr (isText<Field>) {
    g_value_set_string(value, textOrNull(field));
  } else if constexpr (isReal<Field>) {
    g_value_set_double(value, realOf(field));
  } else if constexpr (std::is_same_v<Field, std::size_t>) {
    g_value_set_uint64(value, field);
  } else if constexpr (std::is_same_v<Field, std::int64_t>) {
    if (G_VALUE_HOLDS_ENUM(value)) {
      g_value_set_enum(value, static_cast<int>(field));
    } else {
      g_value_set_int64(value, field);
    }
  } else if constexpr (std::is_same_v<Field, unsigned> || std::is_enum_v<Field>) {
    g_value_set_enum(value, static_cast<int>(field));
  } else {
    g_value_set_int(value, field);
  }
}

template <typename Field>
Field fieldOf(const GValue* value) {
  if constexpr (std::is_same_v<Field, bool>) {
    return g_value_get_boolean(value) != FALSE;
  } else if constexpr (isOpenSwitch<Field>) {
    const int decision = g_value_get_int(value);
    return decision < 0 ? Field{} : Field{decision != 0};
  } else if constexpr (std::is_same_v<Field, std::string>) {
    return textOf(g_value_get_string(value));
  } else if constexpr (isText<Field>) {
    const char* const text = g_value_get_string(value);
    return text == nullptr ? Field{} : Field{text};
  } else if constexpr (isReal<Field>) {
    return static_cast<Field>(g_value_get_double(value));
  } else if constexpr (std::is_same_v<Field, std::size_t>) {
    return g_value_get_uint64(value);
  } else if constexpr (std::is_same_v<Field, std::int64_t>) {
    return G_VALUE_HOLDS_ENUM(value) ? g_value_get_enum(value) : g_value_get_int64(value);
  } else if constexpr (std::is_same_v<Field, unsigned> || std::is_enum_v<Field>) {
    return static_cast<Field>(g_value_get_enum(value));
  } else {
    return g_value_get_int(value);
  }
}

// The row of a field; `least` and `most` bound a number, `enumeration` is the type of a choice.
template <auto member>
constexpr auto property(const char* name, double least = 0, double most = 0,
                        GType (*enumeration)() = nullptr) {
  using Record = typename MemberOf<decltype(member)>::Record;
  using Field = typename MemberOf<decltype(member)>::Field;
  return Property<Record>{
      name,
      least,
      most,
      enumeration,
      [](const Property<Record>& self, const Record& defaults) {
        return pspecOf(self, defaults.*member);
      },
      [](const Record& record, GValue* value) { readField(record.*member, value); },
      [](Record& record, const GValue* value) {
        auto field = fieldOf<Field>(value);
        if (record.*member == field) return false;
        record.*member = std::move(field);
        return true;
      }};
}

template <auto member>
constexpr auto choice(const char* name, GType (*enumeration)()) {
  return property<member>(name, 0, 0, enumeration);
}

template <typename Record, std::size_t count>
void installProperties(GObjectClass* type, const std::array<Property<Record>, count>& table,
                       const Record& defaults) {
  guint id = 0;
  for (const auto& row : table) {
    g_object_class_install_property(type, ++id, row.pspec(row, defaults));
  }
}

// There is no such property.
inline void refuseProperty(GObject* object, guint id, GParamSpec* pspec) {
  G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, pspec);
}

// Both answer whether the id is one of the table's.
template <typename Record, std::size_t count>
bool readProperty(const std::array<Property<Record>, count>& table, const Record& record, guint id,
                  GValue* value) {
  if (id == 0 || id > count) return false;
  table[id - 1].get(record, value);
  return true;
}

template <typename Record, std::size_t count>
bool writeProperty(const std::array<Property<Record>, count>& table, Record& record,
                   GObject* object, guint id, const GValue* value, GParamSpec* pspec) {
  if (id == 0 || id > count) return false;
  if (table[id - 1].set(record, value)) g_object_notify_by_pspec(object, pspec);
  return true;
}

}  // namespace tavo::gobject
