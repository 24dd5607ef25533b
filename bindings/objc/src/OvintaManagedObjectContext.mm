#import <OvintaObjC/OvintaManagedObjectContext.h>

#import "bindings/objc/src/Calls.h"
#import "bindings/objc/src/Conversion.h"
#import "bindings/objc/src/ObjectStore.h"

#include "OvintaSDK/core/OrderStoreContainer.h"

namespace platform = ovinta::platform;
using twins::OpenStore;
using StoreFailure = std::optional<platform::StoreError>;

namespace {

/// Whether all went well; otherwise the error is told to whom wants to know.
bool succeeded(const StoreFailure& failure, NSError** error) {
  if (failure && error) {
    *error = twins::toObjC(
        ovinta::ErrorPtr(std::make_shared<ovinta::OvintaError>(failure->localizedDescription)));
  }
  return !failure;
}

StoreFailure open(OpenStore& store) {
  const platform::Services& services = platform::services();
  auto model = ovinta::orderStoreModel(services);
  if (!model) return platform::StoreError{.localizedDescription = "The model is missing"};
  store.container =
      services.persistentContainers->makeContainer(ovinta::kOrderStoreName, *std::move(model));
  StoreFailure failure;
  store.container->loadPersistentStores(
      [&failure](const auto&, const auto& error) { failure = error; });
  if (!failure) store.context = store.container->newBackgroundContext();
  return failure;
}

}  // namespace

@implementation OvintaEntityDescription

- (instancetype)initWithName:(NSString*)name {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(
                     platform::EntityDescription{.name = twins::text(name), .attributes = {}});
               })];
}

- (NSString*)name {
  return twins::toObjC(twins::object<platform::EntityDescription>(self).name);
}

@end

@implementation OvintaFetchRequest

- (instancetype)initWithEntityName:(NSString*)entityName {
  if ((self = [super init])) entityName_ = [entityName copy];
  return self;
}

- (void)dealloc {
  [entityName_ release];
  [super dealloc];
}

- (NSString*)entityName {
  return entityName_;
}

@end

@implementation OvintaManagedObjectContext

+ (OvintaManagedObjectContext*)orderStoreContextWithError:(NSError**)error {
  auto store = std::make_unique<OpenStore>();
  const StoreFailure failure = twins::callLibrary([&] { return open(*store); });
  if (!succeeded(failure, error)) return nil;
  OvintaManagedObjectContext* const context =
      [NSAllocateObject([OvintaManagedObjectContext class], 0, nullptr) autorelease];
  context->store_ = store.release();
  return context;
}

- (void)dealloc {
  delete static_cast<OpenStore*>(store_);
  [super dealloc];
}

- (NSArray*)executeFetchRequest:(OvintaFetchRequest*)request error:(NSError**)error {
  twins::requireClass(request, [OvintaFetchRequest class]);
  platform::ManagedObjectContext& context = *static_cast<OpenStore*>(store_)->context;
  std::vector<std::shared_ptr<ovinta::CoreOrder>> found;
  const StoreFailure failure = twins::callLibrary([&]() -> StoreFailure {
    const auto stored = context.fetch({.entityName = twins::text([request entityName])});
    if (!stored) return stored.error();
    for (const auto& object : *stored) found.push_back(std::make_shared<ovinta::CoreOrder>(object));
    return std::nullopt;
  });
  return succeeded(failure, error) ? twins::toObjC(found) : nil;
}

- (BOOL)save:(NSError**)error {
  return succeeded(
      twins::callLibrary([&] { return static_cast<OpenStore*>(store_)->context->save(); }), error);
}

@end
