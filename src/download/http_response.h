#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// An HTTP response as it is put together from the bytes of a connection, in pieces of any size. It knows whether
/// the body came whole: a page that broke off never counts as one.
class HttpResponse {
 public:
  static constexpr std::size_t kLargestHead = 64 * 1024;

  /// @param largest_body  bytes, before unpacking
  explicit HttpResponse(std::size_t largest_body) : largest_body_(largest_body) {}

  /// @throws TransferError for what is no HTTP response, and for a head or body that is too large
  void Feed(std::string_view bytes);
  /// The connection has ended. @throws TransferError unless the response is complete, or ends here
  void End();

  bool Started() const { return started_; }
  bool Complete() const { return expects_ == Expects::kNothing; }
  int status() const { return status_; }
  /// Values of a header field, in order; its name without regard to letter case.
  std::vector<std::string_view> Values(std::string_view name) const;
  /// The first of them; empty when there is none.
  std::string_view Value(std::string_view name) const;
  /// May the next request use the same connection?
  bool KeepsConnection() const;
  std::string TakeBody() { return std::move(body_); }

 private:
  enum class Expects {
    kStatusLine,
    kHeaderLine,
    kBody,
    kBodyToTheEnd,
    kChunkSize,
    kChunk,
    kChunkEnd,
    kTrailer,
    kNothing
  };

  bool Step();
  void TakeLine(std::string_view line);
  void TakeStatusLine(std::string_view line);
  void TakeHeaderLine(std::string_view line);
  void TakeChunkSize(std::string_view line);
  void EndHead();
  bool TakePiece();
  std::string_view Untaken() const { return std::string_view(waiting_).substr(taken_); }
  void CheckBody(std::uint64_t more) const;

  const std::size_t largest_body_;
  Expects expects_ = Expects::kStatusLine;
  std::string waiting_;  // what has come; taken up to taken_
  std::size_t taken_ = 0;
  std::size_t head_size_ = 0;  // of all lines so far
  std::uint64_t left_ = 0;     // bytes of the body or chunk under way
  bool started_ = false, keeps_connection_ = false;
  int status_ = 0;
  std::vector<std::pair<std::string, std::string>> fields_;
  std::string body_;
};
