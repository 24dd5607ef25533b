#pragma once

#include <cstddef>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace ovinta::wire {

template <class Member>
struct MemberTraits;

template <class T, class C>
struct MemberTraits<T C::*> {
  using Value = std::remove_cv_t<T>;
  using Class = C;
};

/// One entry of a record's wire table: a key and the path of members that leads to its value.
template <class... Members>
struct Field {
  /// The record that the path starts from.
  using Owner = typename MemberTraits<std::tuple_element_t<0, std::tuple<Members...>>>::Class;
  using Value = typename MemberTraits<
      std::tuple_element_t<sizeof...(Members) - 1, std::tuple<Members...>>>::Value;

  std::string_view key;
  std::tuple<Members...> path;
  /// Whether an absent value is written as null instead of being left out.
  bool writesNull = false;
  /// Whether the field is read after all fields that do not say so. It is written in its place all
  /// the same.
  bool isReadLast = false;

  template <class Record>
  constexpr auto& in(Record& record) const {
    return std::apply(
        [&record](auto... members) -> auto& { return (record.*....*members); }, path);
  }
};

/// A field whose value, at the end of the path, stands under `key`.
template <class... Members>
constexpr Field<Members...> field(std::string_view key, Members... path) {
  return {.key = key, .path = {path...}};
}

/// A field whose value is written as null when it is absent.
template <class... Members>
constexpr Field<Members...> nullableField(std::string_view key, Members... path) {
  return {.key = key, .path = {path...}, .writesNull = true};
}

/// A field that is read after all fields that are not of this kind.
template <class... Members>
constexpr Field<Members...> lastReadField(std::string_view key, Members... path) {
  return {.key = key, .path = {path...}, .isReadLast = true};
}

/// The table of a record whose values stand in the very object of the enclosing record.
template <class Member, class... Fields>
constexpr auto flat(Member member, const std::tuple<Fields...>& table) {
  const auto nest = [member](const auto& inner) {
    return std::apply([&](auto... path) { return field(inner.key, member, path...); }, inner.path);
  };
  return std::apply([&nest](const auto&... inner) { return std::tuple(nest(inner)...); }, table);
}

template <class... Members>
constexpr auto asTable(const Field<Members...>& single) {
  return std::tuple(single);
}

template <class... Fields>
constexpr auto asTable(const std::tuple<Fields...>& several) {
  return several;
}

/// Joins fields and flattened tables into one table, in wire order.
template <class... Parts>
constexpr auto table(const Parts&... parts) {
  return std::tuple_cat(asTable(parts)...);
}

/// The wire table of a record, as `kFields`.
template <class Record>
struct WireTable;

template <class Record>
concept HasWireTable = requires {
  WireTable<Record>::kFields;
};

template <class Record>
inline constexpr std::size_t kFieldCount =
    std::tuple_size_v<std::remove_cvref_t<decltype(WireTable<Record>::kFields)>>;

/// The type of the field at a position of the record's table.
template <class Record, std::size_t I>
using FieldAt = std::tuple_element_t<I, std::remove_cvref_t<decltype(WireTable<Record>::kFields)>>;

/// Calls `visit` with each position of the record's table as an integral constant, in wire order.
template <class Record, class Visit>
constexpr void forEachField(Visit visit) {
  [&visit]<std::size_t... I>(std::index_sequence<I...>) {
    (visit(std::integral_constant<std::size_t, I>{}), ...);
  }
  (std::make_index_sequence<kFieldCount<Record>>{});
}

/// Calls `visit` with each position of the record's table in the order of reading, which decides
/// which one of several malformed members is reported.
template <class Record, class Visit>
constexpr void forEachFieldInReadingOrder(Visit visit) {
  for (const bool last : {false, true}) {
    forEachField<Record>([&](auto position) {
      if (std::get<position()>(WireTable<Record>::kFields).isReadLast == last) visit(position);
    });
  }
}

}  // namespace ovinta::wire
