#import <OvintaObjC/OvintaRegion.h>
#import <OvintaObjC/Pagination.h>
#import <OvintaObjC/Site.h>
#import <OvintaObjC/SitesManagerError.h>

NS_ASSUME_NONNULL_BEGIN

/// Receives the sites or the error.
typedef void (^SitesCallback)(NSArray<Site*>* _Nullable sites, OvintaError* _Nullable error);

/// Receives the sites and where their page stands, or the error.
typedef void (^SitesPageCallback)(NSArray<Site*>* _Nullable sites, Pagination* _Nullable pagination,
                                  OvintaError* _Nullable error);

/// Looks up the pickup sites that the service knows; reached as `Ovinta.sites`, for which every
/// instance stands. All methods may be called from any thread and return at once. A callback, which
/// may be nil, is called at most once, with no lock held: on the callback thread of the URL session
/// when the service was asked, on a thread of the API queue when the stored base URL is no URL,
/// inside the call when the request was refused before. It is left out only where a URL session of
/// the application's own, installed in C++, completes a success without data. Errors:
/// `SitesManagerError` of type `LoadingApiUrl`; those of a request (see `OvintaError`).
@interface SitesManager : NSObject
/// The sites gathered so far; nil before the first. Page 1 of any search replaces them, a later
/// page is appended to those there are, whatever it is a page of. Not kept across restarts.
@property(nonatomic, copy, nullable) NSArray<Site*>* all;

/// One page, counted from 1, of the sites that match the text; nil matches all.
- (void)fetchWithQuery:(nullable NSString*)query
                  page:(int64_t)page
              callback:(nullable SitesPageCallback)callback;

/// All pages of such a search, one after another; the callback receives `all` as it then is. A page
/// that fails ends the run with its error; `all` keeps the pages before it.
- (void)fetchAllWithQuery:(nullable NSString*)query callback:(nullable SitesCallback)callback;

/// One page of the sites in the circle; of the region only centre and radius count.
- (void)fetchWithRegion:(OvintaCircularRegion*)region
                   page:(int64_t)page
               callback:(nullable SitesCallback)callback;
/// The same with `per` sites to a page; without it the service chooses their number.
- (void)fetchWithRegion:(OvintaCircularRegion*)region
                   page:(int64_t)page
                    per:(int64_t)per
               callback:(nullable SitesCallback)callback;
@end

NS_ASSUME_NONNULL_END
