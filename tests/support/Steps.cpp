#include "tests/support/Steps.h"

#include <ostream>

#include "platform/JSON.h"

namespace ovinta::test {

void PrintTo(const Item& item, std::ostream* out) {
  *out << (item.kind.empty() ? "nothing" : item.kind);
  if (!item.kind.empty()) *out << ' ' << platform::writeJSON(item.value);
}

void PrintTo(const Step& step, std::ostream* out) {
  constexpr const char* kKinds[] = {"logged ", "requested ", "posted ", "told "};
  *out << kKinds[step.kind] << step.text;
  if (!step.token.empty()) *out << " as " << step.token;
  if (!step.data.empty()) *out << " with " << step.data;
  for (const Item& item : step.items) PrintTo(item, &(*out << ' '));
  if (step.kind == Step::told && step.items.empty()) *out << "nothing";
}

void PrintTo(const Steps& steps, std::ostream* out) {
  if (steps.empty()) *out << "nothing happened";
  for (const Step& step : steps) PrintTo(step, &(*out << "\n  "));
}

}  // namespace ovinta::test
