#include "platform/simulation/testing/ExpectedRequest.h"

#include <optional>
#include <utility>

#include "platform/JSONText.h"

namespace ovinta::platform::simulation {
namespace {

std::string textOf(const Value& value) {
  auto text = jsonText(value);
  return text ? *std::move(text) : std::string(text.error().what());
}

std::optional<double> number(const Value& value) {
  if (const auto* whole = value.as<std::int64_t>()) return static_cast<double>(*whole);
  if (const auto* any = value.as<double>()) return *any;
  return std::nullopt;
}

bool isSame(const Value& one, const Value& other) {
  if (one == other) return true;
  const auto first = number(one), second = number(other);
  return first && first == second;
}

std::optional<Value> sentField(const URLRequest& request, std::string_view key) {
  const auto record = ExpectedRequest::recordOf(request);
  if (!record) return std::nullopt;
  const auto entry = record->find(key);
  return entry == record->end() ? std::nullopt : std::optional(entry->second);
}

}  // namespace

ExpectedRequest::ExpectedRequest(std::string_view line, SourceLocation place)
    : line_(line), place_(place), description_(line) {}

ExpectedRequest& ExpectedRequest::with(std::string key, Value value) {
  const std::string words = "\"" + key + "\": " + textOf(value);
  return demand(words, [key = std::move(key), value = std::move(value)](const URLRequest& request) {
    const auto sent = sentField(request, key);
    if (sent && isSame(*sent, value)) return std::string();
    return "\"" + key + "\": " + (sent ? textOf(*sent) : "nothing") + " instead of " +
           textOf(value);
  });
}

ExpectedRequest& ExpectedRequest::withBody(std::string text) {
  const std::string words = text.empty() ? "no body" : "the body " + text;
  return demand(words, [text = std::move(text), words](const URLRequest& request) {
    const std::string sent = request.body.value_or("");
    const auto value = parseJSON(sent);
    const bool isEqual = sent == text || (value && value == parseJSON(text));
    return isEqual ? std::string() : "another body instead of " + words;
  });
}

ExpectedRequest& ExpectedRequest::withHeader(std::string name, std::string value) {
  const std::string words = name + ": " + value;
  return demand(
      words, [name = std::move(name), value = std::move(value), words](const URLRequest& request) {
        const auto sent = HTTPResponse{.headers = request.headers}.header(name);
        if (sent == value) return std::string();
        return name + ": " + sent.value_or("nothing") + " instead of " + value;
      });
}

ExpectedRequest& ExpectedRequest::demand(const std::string& words, Check check) {
  description_ += (checks_.empty() ? " with " : ", ") + words;
  checks_.push_back(std::move(check));
  return *this;
}

ExpectedRequest& ExpectedRequest::answer(Answer answer) {
  answer_ = std::move(answer);
  return *this;
}

ExpectedRequest& ExpectedRequest::answer(int statusCode, std::string text) {
  return answer(Answer::json(statusCode, std::move(text)));
}

ExpectedRequest& ExpectedRequest::answerData(Value record) {
  return answer(200, textOf(Dictionary{{"data", std::move(record)}}));
}

ExpectedRequest& ExpectedRequest::answerPage(List records) {
  const Dictionary page{{"current", 1}, {"count", 1}, {"per", records.size()}};
  return answer(200, textOf(Dictionary{{"data", std::move(records)}, {"pages", page}}));
}

ExpectedRequest& ExpectedRequest::loseConnection() { return answer(Answer::lostConnection()); }

ExpectedRequest& ExpectedRequest::after(TimeInterval delay) {
  delay_ = delay;
  return *this;
}

bool ExpectedRequest::isFor(const URLRequest& request) const {
  const std::string sent = lineOf(request);
  if (!line_.ends_with('*')) return sent == line_;
  return sent.starts_with(std::string_view(line_).substr(0, line_.size() - 1));
}

std::vector<std::string> ExpectedRequest::differences(const URLRequest& request) const {
  std::vector<std::string> found;
  for (const Check& check : checks_) {
    if (auto difference = check(request); !difference.empty()) {
      found.push_back(std::move(difference));
    }
  }
  return found;
}

std::string ExpectedRequest::lineOf(const URLRequest& request) {
  const std::string& url = request.url.text;
  const auto host = url.find("://");
  const auto path = host == std::string::npos ? 0 : url.find('/', host + 3);
  return request.method + " " + (path == std::string::npos ? "/" : url.substr(path));
}

std::optional<Dictionary> ExpectedRequest::recordOf(const URLRequest& request) {
  const auto body = request.body ? parseJSON(*request.body) : std::nullopt;
  const auto* const root = body ? body->as<Dictionary>() : nullptr;
  const auto* const data = root ? find<Dictionary>(*root, "data") : nullptr;
  return data ? std::optional(*data) : std::nullopt;
}

}  // namespace ovinta::platform::simulation
