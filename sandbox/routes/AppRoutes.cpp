#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {

Answer showAppInfo(const Call&) {
  return dataAnswer(platform::Dictionary{{"name", "Ovinta sandbox"},
                                         {"support_email", "support@example.com"},
                                         {"terms_of_service_url", "https://example.com/terms"}});
}

}  // namespace ovinta::sandbox
