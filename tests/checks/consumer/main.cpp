#include <OvintaSDK/OvintaSDK.h>

// One call into the library itself, one variable of it, one inline function.
int main() {
  ovinta::Ovinta::updatePushToken("token");
  const bool same = ovinta::Ovinta::pushToken() == "token";
  return same && OvintaSDKVersionString[0] != '\0' && OvintaSDKVersionNumber > 0 ? 0 : 1;
}
