#include "OvintaSDK/model/wire/OrderWire.h"

namespace ovinta::wire {
namespace {

/// The positions, in the order's table, of the fields that `OrderDetails` holds.
constexpr auto detailPositions() {
  constexpr std::size_t kAll = kFieldCount<Order>;
  std::array<std::size_t, kAll> positions{};
  std::size_t count = 0;
  forEachField<Order>([&](auto position) {
    using Owner = typename FieldAt<Order, position()>::Owner;
    if (std::is_same_v<Owner, OrderDetails>) positions[count++] = position();
  });
  return std::pair(positions, count);
}

}  // namespace

/// An order that is made of the values of its fields.
struct ReadOrder final : Order {
  template <std::size_t... I>
  ReadOrder(const Slots<Order>& slots, std::index_sequence<I...>)
      : Order(slots.assemble<OrderProgress>(),
              [&slots] { return slots.take<detailPositions().first[I]>(); }...) {}
};

OrderPtr WireForm<OrderPtr>::decode(const platform::JSONValue& value, const Dates& dates) {
  constexpr std::make_index_sequence<detailPositions().second> kDetails;
  const Slots<Order> slots(value, dates);
  try {
    return slots.located([&] { return std::make_shared<ReadOrder>(slots, kDetails); });
  } catch (const platform::CodingError&) {
    // Each of the two structures takes its own fields, so that the error at hand need not be the
    // first one in the order of reading.
    slots.check();
    throw;
  }
}

void WireForm<OrderPtr>::encode(platform::JSONWriter& writer, const OrderPtr& order,
                                const Dates& dates) {
  WireForm<Order>::encode(writer, *order, dates);
}

void WireForm<Order>::encode(platform::JSONWriter& writer, const Order& order, const Dates& dates) {
  const OrderDetails& details = order;
  encodeRecord<Order>(writer, dates, details, order.progress());
}

}  // namespace ovinta::wire
