#pragma once

#include <httplib.h>
#include <sys/types.h>

#include <memory>
#include <string>
#include <string_view>

#include "platform/Value.h"

namespace ovinta::test {

/// A real browser without a screen, led over WebDriver. What goes wrong is thrown, with what the
/// browser says of it. For one thread.
class Browser {
 public:
  /// Why there is no browser to be had; empty when there is one.
  static std::string whyNot();

  Browser();
  ~Browser();
  Browser(const Browser&) = delete;
  Browser& operator=(const Browser&) = delete;

  void open(const std::string& url);

  /// What the body of a function returns in the page.
  platform::Value run(const std::string& body);
  /// The same as a text; empty for what is none.
  std::string text(const std::string& body);
  /// Returns when the expression has become true in the page.
  void await(const std::string& expression);

  /// Clicks as a person does on the first element that the selector finds.
  void click(const std::string& selector);
  /// Types into it, after what it holds; a file's field takes the file of that path.
  void type(const std::string& selector, const std::string& text);

  /// A command of the developer's tools, such as "Emulation.setEmulatedMedia".
  void command(const std::string& name, platform::Dictionary parameters);
  /// What the page has complained of since the last call, policy violations and failed loads among
  /// it: one line each.
  std::string complaints();
  /// Writes the whole page as a picture.
  void takePicture(const std::string& path);

 private:
  platform::Value call(const std::string& path, const platform::Dictionary& body);
  std::string element(const std::string& selector);

  pid_t driver_ = 0;
  std::unique_ptr<httplib::Client> client_;
  std::string session_;
};

}  // namespace ovinta::test
