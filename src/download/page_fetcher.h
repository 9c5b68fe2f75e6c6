#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

/// Opens a page's address. Qt implements it in download/ui/, a table of pages in tests.
class PageFetcher {
 public:
  /// The time-out of callers that set none of their own, in seconds.
  static constexpr std::int32_t kDefaultTimeout = 60;
  /// The largest body that is taken; a larger one is a failure.
  static constexpr std::size_t kMaxPageBytes = std::size_t{16} << 20;

  using StateChanged = std::function<void(int state)>;

  virtual ~PageFetcher() = default;
  /// Returns when the page is there; the window's events run meanwhile.
  /// @param url      host and path as forum.ini gives them, Windows-1251; "http://" where no scheme stands
  /// @param timeout  whole seconds of silence; 0 or less = no limit
  /// @return the body as received, code page untouched, whatever the server's status is; empty when
  ///         nothing came or Cancel ended the call
  /// @throws TransferError  no connection, time-out, a body broken off or too large, or a call still
  ///         under way
  virtual std::string OpenUrl(std::string_view url, std::int32_t timeout) = 0;
  /// Ends the call under way, if there is one.
  virtual void Cancel() = 0;
  /// Told about each state of a call once, in order: 1 to 7, then 8, 9, 10, 12, or 11 when the call
  /// fails. An empty function ends it.
  virtual void OnStateChanged(StateChanged told) = 0;
};
