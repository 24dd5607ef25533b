// What the service answers, read; what it is told, written.
#include <sys/wait.h>
#include <unistd.h>

#include <malloc.h>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "OvintaSDK/api/CreateOrderEventOperation.h"
#include "OvintaSDK/api/GetOrdersOperation.h"
#include "OvintaSDK/model/LocationUpdateEvent.h"
#include "bench/Allocations.h"
#include "bench/PlainOrder.h"
#include "bench/Row.h"
#include "bench/SampleOrders.h"
#include "platform/JSON.h"
#include "platform/linux/Linux.h"
#include "platform/portable/Portable.h"

namespace ovinta::bench {
namespace {

using platform::JSONDocument;
using platform::URLRequest;

constexpr const char* kBaseURL = "https://service.example.com/api";
constexpr const char* kToken = "0123456789abcdef0123456789abcdef";

/// Answers a request inside the call, or never.
class BenchURLSession : public platform::URLSession {
 public:
  void startDataTask(URLRequest request, Completion completion) override {
    benchmark::DoNotOptimize(request);
    if (body) completion(body(), platform::HTTPResponse{.statusCode = 200}, std::nullopt);
  }

  std::function<std::string()> body;
};

class EmptyBundle : public platform::Bundle {
 public:
  std::optional<std::string> infoText(std::string_view) const override { return "1.2.3"; }
  std::optional<std::string> resource(std::string_view, std::string_view) const override {
    return std::nullopt;
  }
};

/// A context of values, settings and requests: all that an operation takes.
struct Means {
  Means() {
    services = platform::linuxos::makeValueServices();
    services.settings = platform::portable::makeInMemorySettingsStore();
    services.urlSession = session;
    services.mainBundle = services.libraryBundle = std::make_shared<EmptyBundle>();
    context->appToken.set("an application's token");
  }

  platform::Services services;
  std::shared_ptr<BenchURLSession> session = std::make_shared<BenchURLSession>();
  ContextPtr context = std::make_shared<Context>([this]() -> auto& { return services; });
  CustomerPtr customer = std::make_shared<const Customer>(Customer{.token = kToken, .info = {}});
};

Means& means() {
  static auto* const instance = new Means;
  return *instance;
}

constexpr std::size_t kOrders = 1000;

const std::string& answer() {
  static const auto* const text = new std::string(arrived(sampleOrders(kOrders)));
  return *text;
}

OrderList decodedOrders() {
  const JSONDocument document = wire::parseDocument(answer());
  return wire::decode<OrdersResponse>(document.root(), means().context->dates()).data;
}

void countOrders(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kOrders));
}

void decodePlain(benchmark::State& state) {
  const std::string& text = answer();
  for (auto _ : state) benchmark::DoNotOptimize(readPlainOrders(text));
  countOrders(state);
}

void decodeOrders(benchmark::State& state) {
  if (decodedOrders().size() != kOrders) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(decodedOrders());
  countOrders(state);
}

const TimeRow kDecode{"decode/1000 orders of 2 kB", &decodePlain, &decodeOrders, 1.3,
                      Clock::processor};

void decodeArrivedPlain(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(readPlainOrders(arrived(answer())));
  countOrders(state);
}

/// Has a `GetOrdersOperation` take an answer. Gives how many orders it reports.
std::size_t ordersThroughOperation(std::function<std::string()> body) {
  std::size_t count = 0;
  means().session->body = std::move(body);
  std::make_shared<GetOrdersOperation>(APIClient(means().context, kBaseURL), means().customer,
                                       [&count](std::optional<OrderList> orders, const ErrorPtr&) {
                                         count = orders ? orders->size() : 0;
                                       })
      ->main();
  means().session->body = nullptr;
  return count;
}

void decodeThroughOperation(benchmark::State& state) {
  for (auto _ : state) {
    if (ordersThroughOperation([] { return arrived(answer()); }) != kOrders) std::abort();
  }
  countOrders(state);
}

const TimeRow kOperation{"decode/1000 orders through their operation", &decodeArrivedPlain,
                         &decodeThroughOperation, 1.3, Clock::processor};

template <std::size_t Allocations::*Figure, class Work>
std::optional<double> allocatedByOrder(Work work) {
  work();
  const Allocations before = allocations();
  benchmark::DoNotOptimize(work());
  return static_cast<double>((allocations() - before).*Figure) / kOrders;
}

/// The parser keeps its memory, so that this is what the orders take.
template <std::size_t Allocations::*Figure>
std::optional<double> allocatedPlain() {
  return allocatedByOrder<Figure>([] { return readPlainOrders(answer()); });
}

std::optional<double> allocationsOfOrder() {
  return allocatedByOrder<&Allocations::count>(decodedOrders);
}

std::optional<double> bytesOfOrder() {
  static const auto* const document = new JSONDocument(wire::parseDocument(answer()));
  return allocatedByOrder<&Allocations::bytes>(
      [] { return wire::decode<OrdersResponse>(document->root(), means().context->dates()).data; });
}

const FigureRow kCount{"decode/allocations of an order", "", &allocatedPlain<&Allocations::count>,
                       &allocationsOfOrder, 1.05};
const FigureRow kBytes{"decode/malloc bytes of an order", "B", &allocatedPlain<&Allocations::bytes>,
                       &bytesOfOrder, 1.05};

/// A figure of this process's memory, in bytes. Without one the process ends.
double memory(const char* field) {
  std::FILE* const file = std::fopen("/proc/self/status", "r");
  char line[256];
  double kilobytes = 0;
  while (file && std::fgets(line, sizeof line, file)) {
    if (std::strncmp(line, field, std::strlen(field)) == 0) {
      kilobytes = std::atof(line + std::strlen(field));
    }
  }
  if (file) std::fclose(file);
  if (kilobytes == 0) std::abort();
  return kilobytes * 1024;
}

/// Does the work and writes how far the memory rises meanwhile. For a process of its own, which it
/// ends; with an error when the work fails or its peak cannot be told.
[[noreturn]] void tellPeak(bool (*work)(), int output) {
  malloc_trim(0);
  // Has the peak begin at what is in use.
  std::FILE* const file = std::fopen("/proc/self/clear_refs", "w");
  if (!file || std::fputs("5", file) < 0 || std::fclose(file) != 0) _exit(1);
  const double before = memory("VmRSS:");
  const bool isDone = work();
  const double risen = memory("VmHWM:") - before;
  _exit(isDone && write(output, &risen, sizeof risen) == sizeof risen ? 0 : 1);
}

/// How far the memory rises while the work runs, in a process of its own.
std::optional<double> peakOf(bool (*work)()) {
  int ends[2];
  if (pipe(ends) != 0) return {};
  const pid_t child = fork();
  if (child == 0) tellPeak(work, ends[1]);
  close(ends[1]);
  double risen = 0;
  const bool isTold = read(ends[0], &risen, sizeof risen) == sizeof risen;
  close(ends[0]);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0 || !isTold) return {};
  return risen;
}

const std::string& largeAnswer() {
  static const auto* const text = new std::string(sampleOrders(10 * kOrders));
  return *text;
}

constexpr double kMebibyte = 1 << 20;

std::optional<double> sizeOfLargeAnswer() {
  return static_cast<double>(largeAnswer().size()) / kMebibyte;
}

std::optional<double> peakOfFetch() {
  (void)largeAnswer();
  // Everything that is made on first use is there before.
  ordersThroughOperation([] { return arrived(answer()); });
  const auto peak = peakOf(
      [] { return ordersThroughOperation([] { return arrived(largeAnswer()); }) == 10 * kOrders; });
  return peak ? std::optional(*peak / kMebibyte) : std::nullopt;
}

const FigureRow kPeak{"memory/peak of a fetch of 10000 orders, by its body", "MiB",
                      &sizeOfLargeAnswer, &peakOfFetch, 3};

const OrderEvent& positionEvent() {
  static const auto* const event = [] {
    const auto beacon = [](std::uint16_t minor) {
      const auto uuid = platform::UUID::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E5F").value();
      Beacon heard{.identifiers = {.uuid = uuid, .major = 1, .minor = minor}};
      for (const float sample : {-61.F, -64.F, -58.F}) heard.rssi.add(sample);
      for (const float sample : {2.1F, 2.4F, 3.F}) heard.distance.add(sample);
      return heard;
    };
    const platform::Location here{
        .coordinate = {40.712345678, -73.987654321}, .horizontalAccuracy = 12.5, .speed = 8.333333};
    return new OrderEvent(
        locationUpdateEvent(1'234'567, here, std::vector{beacon(2), beacon(3)}, EtaSeconds(421)));
  }();
  return *event;
}

/// Writes an event as one does who knows which fields it has.
struct PlainWriter {
  std::string text;

  void add(std::string_view piece) { text.append(piece); }
  template <class T>
  void addNumber(T number) {
    char buffer[32];
    text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
  }
  void addUUID(const platform::UUID& uuid) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    char buffer[36];
    char* out = buffer;
    for (std::size_t i = 0; i < uuid.bytes.size(); ++i) {
      if (i == 4 || i == 6 || i == 8 || i == 10) *out++ = '-';
      *out++ = kDigits[uuid.bytes[i] >> 4];
      *out++ = kDigits[uuid.bytes[i] & 15];
    }
    text.append(buffer, sizeof buffer);
  }
};

std::string writePlain(const OrderEvent& event) {
  PlainWriter out;
  out.text.reserve(512);
  out.add(R"({"data":{"order_id":)");
  out.addNumber(event.orderID);
  out.add(R"(,"event_type":")");
  out.add(event.eventType);
  out.add(R"(","longitude":)");
  out.addNumber(*event.longitude);
  out.add(R"(,"latitude":)");
  out.addNumber(*event.latitude);
  out.add(R"(,"accuracy":)");
  out.addNumber(*event.accuracy);
  out.add(R"(,"speed":)");
  out.addNumber(*event.speed);
  out.add(R"(,"beacons":[)");
  const char* separator = "";
  for (const Beacon& beacon : *event.beacons) {
    out.add(separator);
    out.add(R"({"rssi":)");
    out.addNumber(beacon.rssi.value);
    out.add(R"(,"distance":)");
    out.addNumber(beacon.distance.value);
    out.add(R"(,"uuid":")");
    out.addUUID(beacon.identifiers.uuid);
    out.add(R"(","major":)");
    out.addNumber(beacon.identifiers.major);
    out.add(R"(,"minor":)");
    out.addNumber(beacon.identifiers.minor);
    out.add("}");
    separator = ",";
  }
  out.add(R"(],"eta_seconds":)");
  out.addNumber(*event.etaSeconds);
  out.add("}}");
  return std::move(out.text);
}

std::string writeOurs(const OrderEvent& event) {
  platform::JSONWriter writer;
  writer.beginObject();
  writer.writtenKey(platform::WrittenKey("data"));
  wire::encode(writer, event, means().context->dates());
  writer.endObject();
  return writer.take();
}

void encodePlain(benchmark::State& state) {
  const OrderEvent& event = positionEvent();
  for (auto _ : state) benchmark::DoNotOptimize(writePlain(event));
}

void encodeEvent(benchmark::State& state) {
  const OrderEvent& event = positionEvent();
  if (writeOurs(event) != writePlain(event)) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(writeOurs(event));
}

const TimeRow kEncode{"encode/order event", &encodePlain, &encodeEvent, 1.1, Clock::processor};

/// A request for an event, by hand.
URLRequest writePlainRequest(const OrderEvent& event, const std::string& base,
                             const std::string& token) {
  URLRequest request;
  request.url.text.reserve(base.size() + 16);
  request.url.text = base;
  request.url.text += "/m/v1/events";
  request.method = "POST";
  request.timeout = std::chrono::seconds(10);
  request.cachePolicy = platform::CachePolicy::reloadIgnoringLocalAndRemoteCacheData;
  request.headers.reserve(7);
  request.headers.push_back({"Authorization", "Token token=\"" + token + "\""});
  request.headers.push_back({"App-Token", "an application's token"});
  request.headers.push_back({"SDK-Version", "1.2.3"});
  request.headers.push_back({"App-Version", "1.2.3"});
  request.headers.push_back({"SDK-Platform", "ios"});
  request.headers.push_back({"Content-Type", "application/json"});
  request.headers.push_back({"Accept", "application/json"});
  request.body = writePlain(event);
  return request;
}

void requestPlain(benchmark::State& state) {
  const std::string base = kBaseURL;
  const std::string token = kToken;
  for (auto _ : state) {
    means().session->startDataTask(writePlainRequest(positionEvent(), base, token),
                                   [](const auto&, const auto&, const auto&) {});
  }
}

void requestOurs(benchmark::State& state) {
  const auto operation = std::make_shared<CreateOrderEventOperation>(
      APIClient(means().context, kBaseURL), means().customer, positionEvent(),
      [](const OrderEvent&) {}, [](const auto&, const ErrorPtr&) {});
  for (auto _ : state) operation->main();
}

const TimeRow kRequest{"request/whole request of an event", &requestPlain, &requestOurs, 1.3,
                       Clock::processor};

}  // namespace
}  // namespace ovinta::bench
