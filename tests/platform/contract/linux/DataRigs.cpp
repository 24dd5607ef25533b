// Settings and objects in SQLite files; dates, texts, URLs and distances.
#include <optional>

#include "platform/linux/Linux.h"
#include "platform/linux/storage/SQLitePersistentContainer.h"
#include "platform/linux/storage/SQLiteSettingsStore.h"
#include "platform/linux/text/ICUDateFormatter.h"
#include "platform/simulation/RecordingLog.h"
#include "tests/platform/contract/DateFormatterContract.h"
#include "tests/platform/contract/ObjectStoreContract.h"
#include "tests/platform/contract/SettingsStoreContract.h"
#include "tests/platform/contract/TextContract.h"
#include "tests/platform/linux/ScopedDefaultZone.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::platform::contract {
namespace {

template <bool hasFile>
struct SettingsRig : testing::Test {
  static constexpr bool kKeeps = hasFile;
  std::shared_ptr<SettingsStore> open() {
    std::optional<std::filesystem::path> file;
    if (hasFile) file = directory_.path() / "Settings.sqlite";
    return std::make_shared<linuxos::SQLiteSettingsStore>(
        file, std::make_shared<simulation::RecordingLog>());
  }
  test::TemporaryDirectory directory_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(SQLite, SettingsStoreContract, SettingsRig<true>);
INSTANTIATE_TYPED_TEST_SUITE_P(WithoutAFile, SettingsStoreContract, SettingsRig<false>);

struct ObjectStoreRig : testing::Test {
  std::shared_ptr<PersistentContainer> makeContainer(ManagedObjectModel model) {
    return linuxos::SQLitePersistentContainerFactory(directory_.path())
        .makeContainer("Items", std::move(model));
  }
  test::TemporaryDirectory directory_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(SQLite, ObjectStoreContract, ObjectStoreRig);

struct DateRig : testing::Test {
  static auto make(const DateFormat& format) {
    return linuxos::makeValueServices().dateFormatters->makeDateFormatter(format);
  }
  void setDeviceZone(const char* id) {
    zone_.reset();
    zone_.emplace(id);
  }
  std::optional<linuxos::ScopedDefaultZone> zone_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(System, DateFormatterContract, DateRig);

struct PlainICURig : DateRig {
  static auto make(const DateFormat& format) {
    return std::make_unique<linuxos::ICUDateFormatter>(format, linuxos::Shortcut::never);
  }
};
INSTANTIATE_TYPED_TEST_SUITE_P(PlainICU, DateFormatterContract, PlainICURig);

struct TextRig : testing::Test {
  const Services services_ = linuxos::makeValueServices();
  std::shared_ptr<Text> text_ = services_.text;
  std::shared_ptr<URLFormat> urls_ = services_.urls;
  std::shared_ptr<Geodesy> geodesy_ = services_.geodesy;
};
INSTANTIATE_TYPED_TEST_SUITE_P(System, TextContract, TextRig);
INSTANTIATE_TYPED_TEST_SUITE_P(System, URLFormatContract, TextRig);
INSTANTIATE_TYPED_TEST_SUITE_P(System, GeodesyContract, TextRig);

}  // namespace
}  // namespace ovinta::platform::contract
