#pragma once

#include <tuple>

namespace velmor {

/// One field of a record: its key in the JSON form, and the member that holds its value.
template <typename Owner, typename Value>
struct Field {
  const char* key;
  Value Owner::*member;
};

template <typename Owner, typename Value>
Field(const char*, Value Owner::*) -> Field<Owner, Value>;

/// A plain struct that lists its fields once, in a static function `fields()` that gives a tuple of
/// Field. Equality (here) and the JSON form (base/Json.h) follow from the list, so a member that is
/// missing from it is neither compared nor encoded.
template <typename Type>
concept Record = requires {
  Type::fields();
};

/// True when every listed field has the same value.
template <Record Type>
[[nodiscard]] constexpr bool operator==(const Type& one, const Type& other) {
  const auto isSame = [&](const auto& field) { return one.*field.member == other.*field.member; };
  return std::apply([&](const auto&... field) { return (... && isSame(field)); }, Type::fields());
}

/// Calls `visit` with each field in the order of the list.
template <Record Type, typename Visit>
constexpr void forEachField(const Visit& visit) {
  std::apply([&](const auto&... field) { (visit(field), ...); }, Type::fields());
}

} // namespace velmor
