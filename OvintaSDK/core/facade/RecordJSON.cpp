#include "OvintaSDK/model/RecordJSON.h"

#include <array>

#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/model/wire/CustomerWire.h"
#include "OvintaSDK/model/wire/OrderEventWire.h"
#include "OvintaSDK/model/wire/OrderRequestWire.h"
#include "OvintaSDK/model/wire/OrderWire.h"
#include "OvintaSDK/model/wire/SiteWire.h"

namespace ovinta {
namespace {

using platform::CodingError;
using platform::JSONValue;
using platform::JSONWriter;

const Dates& dates() { return Library::process().context()->dates(); }

template <class Record>
void readInto(const JSONValue& value, void* handle) {
  using Handle = typename RecordHandle<Record>::Type;
  static_cast<std::optional<Handle>*>(handle)->emplace(wire::decode<Handle>(value, dates()));
}

template <class Record>
void writeFrom(JSONWriter& writer, const void* record) {
  wire::encode(writer, *static_cast<const Record*>(record), dates());
}

template <class... Records>
void readAt(RecordList<Records...>, std::size_t position, const JSONValue& value, void* handle) {
  constexpr std::array kReaders{&readInto<Records>...};
  kReaders.at(position)(value, handle);
}

template <class... Records>
void writeAt(RecordList<Records...>, std::size_t position, JSONWriter& writer, const void* record) {
  constexpr std::array kWriters{&writeFrom<Records>...};
  kWriters.at(position)(writer, record);
}

}  // namespace

std::optional<CodingError> RecordJSON::read(std::size_t position, std::string_view text,
                                            void* handle) {
  try {
    const platform::JSONDocument document = wire::parseDocument(text);
    readAt(ReadableRecords(), position, document.root(), handle);
    return std::nullopt;
  } catch (const CodingError& error) {
    return error;
  }
}

platform::Coded<std::string> RecordJSON::write(std::size_t position, const void* record) {
  try {
    JSONWriter writer;
    writeAt(WritableRecords(), position, writer, record);
    return writer.take();
  } catch (const CodingError& error) {
    return error;
  }
}

}  // namespace ovinta
