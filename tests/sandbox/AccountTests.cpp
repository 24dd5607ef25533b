#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

using AccountTest = CustomerTest;

constexpr const char* kSignUp = "/m/v1/customer/sign_up";
constexpr const char* kSignIn = "/m/v1/customer/sign_in";
constexpr const char* kPassword = "/m/v1/customer/password";

std::string signUpData(const std::string& email, const std::string& password,
                       const std::string& confirmation) {
  return R"({"email":")" + email + R"(","password":")" + password +
         R"(","password_confirmation":")" + confirmation + "\"}";
}

TEST_F(AccountTest, CustomersSignUpInAndChange) {
  take({{"PATCH", "/m/v1/customer", R"({"name":"Bo","car_type":"SUV","car_color":null})", 200,
         "\"Bo\""},
        {"PATCH", "/m/v1/customer", R"({"name":"Bo","phone":null})", 200, "\"SUV\""},
        {"PATCH", "/m/v1/customer", R"({"phone":"6"})", 422, "Name is missing"},
        {"PATCH", kSignUp, signUpData("a b@c", "secret", "secret"), 422, "is no e-mail"},
        {"PATCH", kSignUp, signUpData("a@b@c", "secret", "secret"), 422, "is no e-mail"},
        {"PATCH", kSignUp, signUpData("a@b.c", "short", "short"), 422, "at least 6"},
        {"PATCH", kSignUp, signUpData("a@b.c", "ééé", "ééé"), 422, "at least 6"},
        {"PATCH", kSignUp, signUpData("a@b.c", "secret", "Secret"), 422,
         R"("password_confirmation":["Password confirmation is not the password"])"},
        {"POST", kSignIn, R"({"email":"a@b.c","password":"secret"})", 401, "is wrong"},
        {"PATCH", kSignUp, signUpData("a@b.c", "secret", "secret"), 200, R"("a@b.c")"},
        {"PATCH", kSignUp, signUpData("d@b.c", "secret", "secret"), 422, "set already"},
        {"POST", kSignIn, R"({"email":"A@B.C","password":"secret"})", 200, token},
        {"POST", kSignIn, R"({"email":"a@b.c","password":"Secret"})", 401, "is wrong"},
        {"POST", kSignIn, R"({"email":"a@b.c"})", 422, "Password is missing"}});
  EXPECT_EQ(app.send("GET", "/m/v1/customer").record(), (Dictionary{{"api_token", token},
                                                                    {"name", "Bo"},
                                                                    {"car_type", "SUV"},
                                                                    {"phone", "5"},
                                                                    {"email", "a@b.c"}}));
  app.becomeCustomer();
  take({{"PATCH", kSignUp, signUpData("A@b.c", "secret", "secret"), 422, "is taken"}});
}

TEST_F(AccountTest, AResetTokenSetsANewPasswordOnce) {
  const auto newPassword = [](const std::string& secret, const std::string& confirmation) {
    return R"({"reset_password_token":")" + secret + R"(","password":"newone","confirmation":")" +
           confirmation + "\"}";
  };
  take({{"PATCH", kSignUp, signUpData("a@b.c", "secret", "secret"), 200, ""},
        {"POST", kPassword, R"({"email":"x@b.c"})", 202, "{}"},
        {"POST", kPassword, R"({"email":"x"})", 422, "is no e-mail"}});
  EXPECT_EQ(app.resetToken("a@b.c"), "");
  take({{"POST", kPassword, R"({"email":"a@b.c"})", 202, "{}"}});
  const std::string replaced = app.resetToken("a@b.c");
  take({{"POST", "//m/v1/customer/password", R"({"email":"A@b.c"})", 202, "{}"}});
  const std::string newest = app.resetToken("a@b.c");
  EXPECT_THAT(app.send("GET", "/sandbox/customers").body,
              testing::Not(testing::HasSubstr("\"password\"")));
  take({{"PATCH", kPassword, newPassword(replaced, "newone"), 422, "is unknown or used"},
        {"PATCH", kPassword, newPassword(newest, "other"), 422, R"("confirmation":)"},
        {"PATCH", kPassword, newPassword(newest, "newone"), 200, R"("a@b.c")"},
        {"PATCH", kPassword, newPassword(newest, "newone"), 422, "is unknown or used"},
        {"POST", kSignIn, R"({"email":"a@b.c","password":"secret"})", 401, ""},
        {"POST", kSignIn, R"({"email":"a@b.c","password":"newone"})", 200, ""}});
}

}  // namespace
}  // namespace ovinta::sandbox
