#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/PersistentContainer.h"

namespace ovinta::test {

/// A container, and its own factory, that cannot be loaded or whose contexts save nothing.
class BrokenContainer : public platform::PersistentContainer,
                        public platform::PersistentContainerFactory,
                        public std::enable_shared_from_this<BrokenContainer> {
 public:
  using StoreError = platform::StoreError;

  struct Faults {
    std::optional<StoreError> load = {};
    bool hasStores = true;
    /// Whether at least deleting works.
    bool deletes = false;
  };

  explicit BrokenContainer(Faults faults) : faults_(std::move(faults)) {}

  std::shared_ptr<platform::PersistentContainer> makeContainer(
      std::string_view, platform::ManagedObjectModel) override {
    return shared_from_this();
  }
  void loadPersistentStores(
      const std::function<void(const platform::PersistentStoreDescription&,
                               std::optional<StoreError>)>& completion) override {
    completion({}, faults_.load);
  }
  std::vector<platform::PersistentStoreDescription> persistentStoreDescriptions() const override {
    if (!faults_.hasStores) return {};
    return {{.location = "nowhere"}};
  }
  std::unique_ptr<platform::ManagedObjectContext> newBackgroundContext() override {
    return std::make_unique<Context>(faults_.deletes);
  }

 private:
  class Context : public platform::ManagedObjectContext {
   public:
    explicit Context(bool deletes) : deletes_(deletes) {}
    std::optional<StoreError> executeBatchDelete(const platform::FetchRequest&) override {
      return deletes_ ? std::nullopt : std::optional(StoreError{"cannot delete", {}});
    }
    void insert(std::shared_ptr<const platform::ManagedObject>) override {
      EXPECT_TRUE(deletes_) << "after a failed delete";
    }
    std::optional<StoreError> save() override {
      EXPECT_TRUE(deletes_) << "after a failed delete";
      return StoreError{"cannot save", {}};
    }
    platform::Expected<std::vector<platform::ManagedObject>, platform::StoreError> fetch(
        const platform::FetchRequest&) override {
      return std::vector<platform::ManagedObject>();
    }

   private:
    bool deletes_;
  };

  Faults faults_;
};

}  // namespace ovinta::test
