#include "sandbox/http/RequestBody.h"

#include "sandbox/http/RequestHead.h"

namespace ovinta::sandbox {
namespace {

constexpr std::size_t kLongestOfApps = std::size_t{1} << 20;
/// A snapshot of more than ten thousand orders. What it takes in memory is many times as much.
constexpr std::size_t kLongestOfTesters = std::size_t{16} << 20;

Answer refuseParts(const httplib::ContentReader& read) {
  read([](const httplib::MultipartFormData&) { return true; },
       [](const char*, std::size_t) { return true; });
  return errorAnswer(415, "body", "must be JSON, not a form in parts");
}

}  // namespace

std::size_t longestBody(std::string_view path) {
  return isTesters(path) ? kLongestOfTesters : kLongestOfApps;
}

platform::Expected<std::string, Answer> receiveBody(const httplib::Request& request,
                                                    const httplib::ContentReader& read,
                                                    std::size_t limit) {
  if (request.is_multipart_form_data()) return refuseParts(read);
  std::string body;
  std::size_t size = 0;
  const bool isWhole = read([&](const char* data, std::size_t length) {
    size += length;
    if (size <= limit) body.append(data, length);
    return size <= limit;
  });
  if (size > limit) {
    return errorAnswer(413, "body", "is longer than " + std::to_string(limit) + " bytes");
  }
  if (!isWhole) return errorAnswer(400, "body", "cannot be read");
  return body;
}

}  // namespace ovinta::sandbox
