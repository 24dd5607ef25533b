#include "platform/Delivery.h"

namespace ovinta::platform {

std::string summary(const DeliveryAccount& account) {
  struct Sum {
    std::string_view before;
    std::uint64_t count;
  };
  const Sum sums[] = {{"made ", account.made},
                      {" = delivered ", account.delivered},
                      {" + waiting ", account.waiting},
                      {" + superseded ", account.superseded},
                      {" + dropped ", account.droppedInAll()}};
  std::string text;
  const auto append = [&text](const Sum& sum) {
    text.append(sum.before).append(std::to_string(sum.count));
  };
  for (const Sum& sum : sums) append(sum);
  std::string_view before = " (";
  for (std::size_t i = 0; i < account.dropped.size(); ++i) {
    if (account.dropped.at(i) == 0) continue;
    text.append(before).append(kDropReasonNames.at(i));
    append({" ", account.dropped.at(i)});
    before = ", ";
  }
  if (before == ", ") text += ")";
  return text;
}

}  // namespace ovinta::platform
