#include "download/http_response.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace {

constexpr int kTransfer = 35754;

[[noreturn]] void ThrowNotHttp() { throw TransferError(kTransfer, "Ответ узла не читается"_ru); }
[[noreturn]] void ThrowBrokenOff() { throw TransferError(kTransfer, "Соединение прервано"_ru); }
[[noreturn]] void ThrowTooLarge() { throw TransferError(error_number::kOverflow, "Страница слишком велика"_ru); }

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  return first == std::string_view::npos ? "" : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Digits and nothing else.
template <typename Number>
std::optional<Number> ReadNumber(std::string_view digits, int base) {
  Number number = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number, base);
  if (error != std::errc() || stop != end || digits.front() == '-') return std::nullopt;
  return number;
}

}  // namespace

void HttpResponse::Feed(std::string_view bytes) {
  started_ = started_ || !bytes.empty();
  waiting_ += bytes;
  while (!Complete() && Step()) continue;
  waiting_.erase(0, taken_);
  taken_ = 0;
}

void HttpResponse::End() {
  if (expects_ == Expects::kBodyToTheEnd) expects_ = Expects::kNothing;
  if (!Complete()) ThrowBrokenOff();
}

std::vector<std::string_view> HttpResponse::Values(std::string_view name) const {
  std::vector<std::string_view> values;
  for (const auto& [field, value] : fields_)
    if (cp1251::EqualIgnoringCase(field, name)) values.push_back(value);
  return values;
}

std::string_view HttpResponse::Value(std::string_view name) const {
  const auto values = Values(name);
  return values.empty() ? std::string_view() : values.front();
}

bool HttpResponse::KeepsConnection() const { return Complete() && keeps_connection_ && waiting_.empty(); }

// One line, or one piece of the body. False when more bytes are needed.
bool HttpResponse::Step() {
  if (expects_ == Expects::kBody || expects_ == Expects::kBodyToTheEnd || expects_ == Expects::kChunk)
    return TakePiece();
  const std::string_view untaken = Untaken();
  const std::size_t line_end = untaken.find('\n');
  if (std::min(line_end, untaken.size()) > kLargestHead) ThrowTooLarge();
  if (line_end == std::string_view::npos) return false;
  taken_ += line_end + 1;
  TakeLine(Trimmed(untaken.substr(0, line_end)));
  return true;
}

void HttpResponse::TakeLine(std::string_view line) {
  if (expects_ != Expects::kChunkSize && expects_ != Expects::kChunkEnd) {
    head_size_ += line.size() + 1;
    if (head_size_ > kLargestHead) ThrowTooLarge();
  }
  switch (expects_) {
    case Expects::kStatusLine: return TakeStatusLine(line);
    case Expects::kHeaderLine: return line.empty() ? EndHead() : TakeHeaderLine(line);
    case Expects::kChunkSize: return TakeChunkSize(line);
    case Expects::kChunkEnd:
      if (!line.empty()) ThrowNotHttp();
      expects_ = Expects::kChunkSize;
      return;
    default:
      if (line.empty()) expects_ = Expects::kNothing;  // trailers say nothing that is needed
  }
}

// "HTTP/1.1 200 OK"
void HttpResponse::TakeStatusLine(std::string_view line) {
  constexpr std::string_view kVersion = "HTTP/1.";
  constexpr std::size_t kStatusAt = kVersion.size() + 2, kStatusLength = 3;
  if (!line.starts_with(kVersion) || line.size() < kStatusAt + kStatusLength) ThrowNotHttp();
  const auto status = ReadNumber<int>(line.substr(kStatusAt, kStatusLength), 10);
  if (!status) ThrowNotHttp();
  status_ = *status;
  keeps_connection_ = line[kVersion.size()] != '0';
  fields_.clear();
  expects_ = Expects::kHeaderLine;
}

void HttpResponse::TakeHeaderLine(std::string_view line) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) ThrowNotHttp();
  fields_.emplace_back(Trimmed(line.substr(0, colon)), Trimmed(line.substr(colon + 1)));
}

// How long the body is, and whether another may follow it.
void HttpResponse::EndHead() {
  constexpr int kInterim = 200, kNoContent = 204, kNotModified = 304;
  if (status_ < kInterim) {
    expects_ = Expects::kStatusLine;  // the real response comes behind
    return;
  }
  const std::string_view coding = Value("Transfer-Encoding");
  const auto lengths = Values("Content-Length");
  const std::string connection = cp1251::Folded(Value("Connection"));
  keeps_connection_ = connection.find("close") == std::string::npos &&
                      (keeps_connection_ || connection.find("keep-alive") != std::string::npos);
  if (status_ == kNoContent || status_ == kNotModified) {
    expects_ = Expects::kNothing;
  } else if (!coding.empty()) {
    if (!cp1251::EqualIgnoringCase(coding, "chunked")) ThrowNotHttp();
    expects_ = Expects::kChunkSize;
  } else if (!lengths.empty()) {
    const auto length = lengths.front().empty() ? std::nullopt : ReadNumber<std::uint64_t>(lengths.front(), 10);
    if (!length || std::any_of(lengths.begin(), lengths.end(), [&](auto other) { return other != lengths.front(); }))
      ThrowNotHttp();
    CheckBody(*length);
    left_ = *length;
    expects_ = left_ == 0 ? Expects::kNothing : Expects::kBody;
  } else {
    keeps_connection_ = false;
    expects_ = Expects::kBodyToTheEnd;
  }
}

// "1a;what nobody reads"
void HttpResponse::TakeChunkSize(std::string_view line) {
  const std::string_view digits = Trimmed(line.substr(0, line.find(';')));
  const auto size = digits.empty() ? std::nullopt : ReadNumber<std::uint64_t>(digits, 16);
  if (!size) ThrowNotHttp();
  CheckBody(*size);
  left_ = *size;
  expects_ = left_ == 0 ? Expects::kTrailer : Expects::kChunk;
}

bool HttpResponse::TakePiece() {
  const std::string_view untaken = Untaken();
  if (untaken.empty()) return false;
  if (expects_ == Expects::kBodyToTheEnd) {
    CheckBody(untaken.size());
    body_ += untaken;
    taken_ = waiting_.size();
    return false;
  }
  const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(left_, untaken.size()));
  body_ += untaken.substr(0, size);
  taken_ += size;
  left_ -= size;
  if (left_ == 0) expects_ = expects_ == Expects::kChunk ? Expects::kChunkEnd : Expects::kNothing;
  return true;
}

void HttpResponse::CheckBody(std::uint64_t more) const {
  if (more > largest_body_ - body_.size()) ThrowTooLarge();
}
