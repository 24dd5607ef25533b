#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "sandbox/http/Answer.h"
#include "sandbox/http/RequestHead.h"

namespace ovinta::sandbox {

/// A request as it comes in, in pieces of any size. Says when it is whole, and as early as it can
/// that it never will be served.
class IncomingRequest {
 public:
  enum class State { head, body, whole, refused };

  /// `isPublic` as in `Reception::Limits`.
  explicit IncomingRequest(bool isPublic = false) : isPublic_(isPublic) {}

  /// Takes the next piece, while the request is neither whole nor refused. Ends of lines before a
  /// request, which some clients send after the body of the one before, and what follows a whole
  /// request are dropped.
  State take(std::string_view bytes);
  /// Gives the request up with that answer.
  void refuse(Answer answer);

  State state() const { return state_; }
  /// Empty until it was received and understood.
  const RequestHead& head() const { return head_; }
  /// The answer to a request that is refused.
  const Answer& refusal() const { return refusal_; }
  /// Whether the client wants to be told that it shall send the body; true once at most.
  bool takeWishToContinue();
  /// Whether the client, once it is answered, may send another request over the same connection.
  /// One that names no host is no client of HTTP/1.1, one that asks for more than to keep the
  /// connection may want it closed, and what has come too early is not looked at.
  bool allowsNext() const;
  /// What was kept so far, with chunks joined to a body of known length. Of the header fields those
  /// are left out that say how the request comes or ask for a part of the answer.
  const std::string& text() const { return text_; }

 private:
  enum class Framing { length, chunks };

  void takeHead(std::size_t end);
  /// How the body is delimited; a refusal when that is not clear.
  void readFraming();
  void takeBody();
  /// Follows one more chunk, or the end; false when more is needed first.
  bool followChunk();
  void end();

  bool isPublic_;
  State state_ = State::head;
  RequestHead head_;
  Answer refusal_;
  std::string text_;
  bool wantsContinue_ = false;
  Framing framing_ = Framing::length;
  /// The longest body, without what frames it.
  std::size_t limit_ = 0;
  /// Where the body begins.
  std::size_t body_ = 0;
  /// What the body holds, as announced or as seen in chunks.
  std::size_t content_ = 0;
  /// Where the chunks begin that were not followed yet.
  std::size_t next_ = 0;
  /// Whether more than ends of lines has come after the whole request.
  bool hasMore_ = false;
};

}  // namespace ovinta::sandbox
