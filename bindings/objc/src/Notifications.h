#pragma once

namespace twins {

/// From now on, what the library posts on its notification centre is also posted on the default
/// `NSNotificationCenter`, with the twin of the object. Again for the same centre: no effect.
void forwardNotifications();

}  // namespace twins
