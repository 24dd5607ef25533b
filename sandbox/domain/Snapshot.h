#pragma once

#include "platform/Date.h"
#include "platform/Value.h"
#include "sandbox/domain/Refusal.h"
#include "sandbox/domain/World.h"

namespace ovinta::sandbox {

/// All that is known, as a document: the lists "sites", "customers" and "orders", and "generator",
/// where the generator of tokens and codes is.
platform::Dictionary snapshotOf(const World& world);

/// The world that a document tells of. Every part may be missing: without "sites" there are the
/// built-in ones, without "generator" the given one is used. Records may lack what new ones are
/// given. The refusal names each faulty field with the place of its record, as in
/// "orders.0.site_id".
platform::Expected<World, Refusal> readSnapshot(const platform::Dictionary& document,
                                                SeededGenerator generator, platform::Date now);

}  // namespace ovinta::sandbox
