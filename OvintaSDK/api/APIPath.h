#pragma once

#include <string>
#include <string_view>

namespace ovinta {

/// The paths of the service. The two password paths begin with a slash, the others do not; they are
/// appended to the base URL as they stand.
class APIPath {
 public:
  static APIPath orderEdit(std::string_view code);
  static APIPath order(std::string_view code);
  static APIPath app() { return APIPath("m/v1/app"); }
  static APIPath customer() { return APIPath("m/v1/customer"); }
  static APIPath signIn() { return APIPath("m/v1/customer/sign_in"); }
  static APIPath signUp() { return APIPath("m/v1/customer/sign_up"); }
  static APIPath requestPassword() { return APIPath("/m/v1/customer/password"); }
  static APIPath setPassword() { return APIPath("/m/v1/customer/password"); }
  static APIPath orders() { return APIPath("m/v1/orders"); }
  static APIPath events() { return APIPath("m/v1/events"); }
  static APIPath sites() { return APIPath("m/v1/sites"); }

  const std::string& text() const { return text_; }

 private:
  explicit APIPath(std::string text) : text_(std::move(text)) {}

  std::string text_;
};

inline APIPath APIPath::orderEdit(std::string_view code) {
  return APIPath(order(code).text() + "/edit");
}

inline APIPath APIPath::order(std::string_view code) {
  return APIPath(orders().text() + "/" + std::string(code));
}

}  // namespace ovinta
