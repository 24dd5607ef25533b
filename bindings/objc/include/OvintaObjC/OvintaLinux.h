#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// What an application on Linux decides about the platform that the library stands on. The main
/// thread is the process's initial one, or the one that called `runMainLoop` before anything else.
@interface OvintaLinux : NSObject
/// Has the library use this system's services from now on, with the application's data in a
/// directory of that name below the user's data directory. Call it once, before any other use of
/// the library; without it the executable's name serves. May be called from any thread.
+ (void)installWithApplicationID:(NSString*)applicationID;
/// Serves the main queue on the calling thread until `quitMainLoop` is called; for applications
/// that run no loop of their own. On another thread than the main one it returns at once, and the
/// log says why.
+ (void)runMainLoop;
/// Has `runMainLoop` return after the task in progress; before one is called, the next one returns
/// at once. May be called from any thread.
+ (void)quitMainLoop;
@end

NS_ASSUME_NONNULL_END
