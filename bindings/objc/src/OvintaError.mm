#import "bindings/objc/src/Conversion.h"

NSErrorDomain const OvintaErrorDomain = @"OvintaErrorDomain";
NSString* const OvintaErrorTitleKey = @"OvintaErrorTitle";
NSString* const OvintaErrorStatusCodeKey = @"OvintaErrorStatusCode";
NSString* const OvintaErrorFieldErrorsKey = @"OvintaErrorFieldErrors";
NSString* const OvintaErrorAppUpgradeURLKey = @"OvintaErrorAppUpgradeURL";
NSString* const OvintaErrorTypeKey = @"OvintaErrorType";
NSString* const OvintaErrorDetailKey = @"OvintaErrorDetail";

namespace {

/// What is found out about an error, kind by kind.
struct Description {
  Class twinClass = [OvintaError class];
  OvintaErrorCode code = OvintaErrorCodeUnknown;
  NSMutableDictionary* userInfo = [NSMutableDictionary dictionary];

  void add(NSString* key, id value) {
    if (value) [userInfo setObject:value forKey:key];
  }
};

void addFields(Description&, const ovinta::OvintaError&) {}

void addFields(Description& description, const ovinta::OvintaAPIError& error) {
  description.add(OvintaErrorStatusCodeKey, twins::toObjC(error.statusCode()));
  description.add(OvintaErrorFieldErrorsKey, twins::toObjC(error.errors()));
  description.add(OvintaErrorAppUpgradeURLKey, twins::toObjC(error.appUpgradeURL()));
}

template <class Error>
requires requires(const Error& error) { error.type(); }
void addFields(Description& description, const Error& error) {
  description.add(OvintaErrorTypeKey, twins::toObject(error.type()));
  if constexpr (requires { error.detail(); }) {
    if (!error.detail().empty()) {
      description.add(OvintaErrorDetailKey, twins::toObjC(error.detail()));
    }
  }
}

template <class Error>
void describe(Description& description, const ovinta::OvintaError& error, Class twinClass,
              OvintaErrorCode code) {
  const auto* const found = dynamic_cast<const Error*>(&error);
  if (!found) return;
  description.twinClass = twinClass;
  description.code = code;
  addFields(description, *found);
}

}  // namespace

OvintaError* twins::toObjC(const ovinta::ErrorPtr& error) {
  if (!error) return nil;
  Description found;
  found.add(NSLocalizedDescriptionKey, toObjC(error->errorDescription()));
  found.add(OvintaErrorTitleKey, toObjC(error->title()));
#define OVINTA_KIND(Name, code) \
  describe<ovinta::Name>(found, *error, [Name class], OvintaErrorCode##code)
  OVINTA_KIND(OvintaErrorInvalidURL, InvalidURL);
  OVINTA_KIND(OvintaErrorInvalidResponse, InvalidResponse);
  OVINTA_KIND(OvintaAPIError, API);
  OVINTA_KIND(OrdersManagerError, OrdersManager);
  OVINTA_KIND(CustomerManagerError, CustomerManager);
  OVINTA_KIND(SitesManagerError, SitesManager);
  OVINTA_KIND(NotifyManagerError, NotifyManager);
  return [found.twinClass errorWithDomain:OvintaErrorDomain
                                     code:found.code
                                 userInfo:found.userInfo];
}

@implementation OvintaError

- (NSString*)errorDescription {
  return [self localizedDescription];
}

- (NSString*)title {
  return [[self userInfo] objectForKey:OvintaErrorTitleKey];
}

- (BOOL)isEqual:(id)other {
  return other == self || ([other isMemberOfClass:[self class]] && [other code] == [self code] &&
                           [[other userInfo] isEqual:[self userInfo]]);
}

- (NSUInteger)hash {
  return [[self localizedDescription] hash];
}

@end

@implementation OvintaErrorInvalidURL
@end

@implementation OvintaErrorInvalidResponse
@end

@implementation OvintaAPIError

- (NSNumber*)statusCode {
  return [[self userInfo] objectForKey:OvintaErrorStatusCodeKey];
}

- (NSDictionary*)errors {
  return [[self userInfo] objectForKey:OvintaErrorFieldErrorsKey];
}

- (ErrorBody*)body {
  if (![self errors]) return nil;
  ovinta::ErrorBody body;
  for (NSString* field in [self errors]) {
    auto& messages = body.errors[twins::text(field)];
    for (NSString* message in [[self errors] objectForKey:field]) {
      messages.push_back(twins::text(message));
    }
  }
  return twins::toObjC(body);
}

- (NSURL*)appUpgradeURL {
  return [[self userInfo] objectForKey:OvintaErrorAppUpgradeURLKey];
}

@end

/// A manager's error, whose type tells what it is about.
#define OVINTA_MANAGER_ERROR(Name)                                                 \
  NSString* Name##TypeRawValue(Name##Type type) {                                  \
    return twins::toObjC(ovinta::rawValue(static_cast<ovinta::Name##Type>(type))); \
  }                                                                                \
  @implementation Name                                                             \
  -(Name##Type)type {                                                              \
    return static_cast<Name##Type>(                                                \
        [[[self userInfo] objectForKey:OvintaErrorTypeKey] integerValue]);         \
  }

OVINTA_MANAGER_ERROR(OrdersManagerError)
@end

OVINTA_MANAGER_ERROR(CustomerManagerError)
@end

OVINTA_MANAGER_ERROR(SitesManagerError)
@end

OVINTA_MANAGER_ERROR(NotifyManagerError)

- (NSString*)detail {
  NSString* const detail = [[self userInfo] objectForKey:OvintaErrorDetailKey];
  return detail ? detail : @"";
}

@end
