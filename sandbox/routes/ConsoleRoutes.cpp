#include <algorithm>
#include <array>
#include <utility>

#include "sandbox/console/ConsoleFiles.h"
#include "sandbox/routes/Routes.h"

namespace ovinta::sandbox {
namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kContentTypes = {
    {{".html", "text/html; charset=utf-8"},
     {".css", "text/css; charset=utf-8"},
     {".js", "text/javascript; charset=utf-8"},
     {".svg", "image/svg+xml"}}};

/// The page runs its own files and nothing else, asks nobody but the service, and is in no other
/// site's frame.
const std::map<std::string, std::string>& protection() {
  static const std::map<std::string, std::string> kHeaders = {
      {"Content-Security-Policy",
       "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; "
       "connect-src 'self'; base-uri 'none'; form-action 'self'; frame-ancestors 'none'"},
      {"X-Content-Type-Options", "nosniff"},
      {"X-Frame-Options", "DENY"},
      {"Referrer-Policy", "no-referrer"},
      {"Cross-Origin-Opener-Policy", "same-origin"},
      {"Cross-Origin-Resource-Policy", "same-origin"},
      {"Cache-Control", "no-store"}};
  return kHeaders;
}

Answer fileAnswer(std::string_view name) {
  const auto files = consoleFiles();
  const auto file = std::ranges::find(files, name, &ConsoleFile::name);
  if (file == files.end()) return errorAnswer(404, "path", "is unknown");
  const auto type = std::ranges::find_if(
      kContentTypes, [&](const auto& entry) { return name.ends_with(entry.first); });
  return {.contentType = std::string(type->second),
          .body = std::string(file->content),
          .headers = protection()};
}

}  // namespace

Answer leadToConsole(const Call&) {
  return {.status = 302, .headers = {{"Location", "/sandbox/"}}};
}

Answer showConsole(const Call&) { return fileAnswer("page.html"); }

Answer showConsoleFile(const Call& call) { return fileAnswer(call.parameters[0]); }

}  // namespace ovinta::sandbox
