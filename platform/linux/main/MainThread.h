#pragma once

namespace ovinta::platform::linuxos {

/// Fixes the process's initial thread as the main thread, unless one was fixed before.
void rememberMainThread();

/// Fixes the calling thread as the main thread, unless one was fixed before. Whether it is the main
/// thread then.
bool becomeMainThread();

/// Whether the calling thread is the main thread: the one that was fixed, or else the process's
/// initial one.
bool isMainThread();

/// Makes the calling thread, which is the main one, the only one that runs tasks.
void claimTasks();

/// Whether the application has said which thread the main one is: by `claimMainThread`, or by
/// running tasks there.
bool isMainThreadClaimed();

}  // namespace ovinta::platform::linuxos
