#include "sandbox/http/Delivery.h"

#include <httplib.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <utility>

#include "sandbox/http/Connection.h"

namespace ovinta::sandbox {
namespace {

/// How long a listener that has hung up can go unnoticed.
constexpr std::chrono::milliseconds kListenerCheck{250};

/// Sends the events until either side ends.
void streamEvents(Answer answer, httplib::Response& reply) {
  reply.set_chunked_content_provider(
      answer.contentType, [events = std::move(answer.events), place = std::move(answer.place)](
                              std::size_t offset, httplib::DataSink& sink) {
        const auto send = [&](const std::string& text) {
          return sink.write(text.data(), text.size());
        };
        if (offset == 0) return send(events->greeting());
        const auto event = events->nextEvent(kListenerCheck);
        // Looked at after the wait: what a listener that has gone would get is for the next.
        if (!sink.is_writable()) return false;
        if (event) {
          if (!send(*event)) return false;
          events->taken();
        }
        if (events->isClosed()) sink.done();
        return true;
      });
}

/// Ends the connection without a word.
void sendNothing(const Answer& answer, Connection& connection) {
  const Delivery delivery = answer.delivery.value_or(Delivery());
  if (delivery.end == Delivery::End::silence && answer.end) connection.waitForHangUp(*answer.end);
  if (delivery.end == Delivery::End::reset) {
    connection.reset();
  } else {
    connection.close();
  }
}

void sendSpoilt(const Delivery& delivery, Answer answer, Connection& connection,
                httplib::Response& reply) {
  const std::size_t announced = delivery.announced.value_or(answer.body.size());
  const std::size_t sent = delivery.sent.value_or(answer.body.size());
  reply.set_content_provider(
      announced, answer.contentType,
      [body = std::move(answer.body), sent, end = delivery.end, place = std::move(answer.place),
       &connection](std::size_t offset, std::size_t, httplib::DataSink& sink) {
        const std::size_t count = std::min(body.size(), sent - offset);
        if (count > 0 && !sink.write(body.data(), count)) return false;
        const bool isLast = offset + count >= sent;
        // What comes after an orderly end is not this thread's to wait for.
        if (isLast && end == Delivery::End::orderly) return false;
        if (!sink.is_writable()) return false;
        if (isLast) connection.reset();
        return !isLast;
      });
}

struct Reason {
  int status;
  std::string_view phrase;
};

constexpr std::array<Reason, 7> kReasons = {{{400, "Bad Request"},
                                             {403, "Forbidden"},
                                             {408, "Request Timeout"},
                                             {413, "Payload Too Large"},
                                             {414, "URI Too Long"},
                                             {431, "Request Header Fields Too Large"},
                                             {503, "Service Unavailable"}}};

}  // namespace

std::string wireText(const Answer& answer, bool withBody) {
  const auto reason = std::ranges::find(kReasons, answer.status, &Reason::status);
  std::string text = "HTTP/1.1 " + std::to_string(answer.status) + " ";
  text.append(reason == kReasons.end() ? "Refused" : reason->phrase).append("\r\n");
  text.append("Connection: close\r\nContent-Type: ").append(answer.contentType).append("\r\n");
  text.append("Content-Length: " + std::to_string(answer.body.size()) + "\r\n\r\n");
  return withBody ? text + answer.body : text;
}

void deliver(Answer answer, Connection& connection, httplib::Response& reply) {
  if (answer.status == 0) return sendNothing(answer, connection);
  reply.status = answer.status;
  for (const auto& [name, value] : answer.headers) reply.set_header(name, value);
  if (answer.events || answer.delivery) connection.endWithAnswer();
  if (answer.events) return streamEvents(std::move(answer), reply);
  if (const auto delivery = answer.delivery) {
    return sendSpoilt(*delivery, std::move(answer), connection, reply);
  }
  reply.set_content(answer.body, answer.contentType);
}

}  // namespace ovinta::sandbox
