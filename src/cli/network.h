#pragma once

#include <memory>

#include "download/alarm.h"
#include "download/page_fetcher.h"

namespace cli {

/// Where a command gets its pages from, and the event loop that runs meanwhile.
class Network {
 public:
  virtual ~Network() = default;
  virtual PageFetcher& pages() = 0;
  virtual Alarm& alarm() = 0;
  /// Runs the events that wait, for whoever goes on without asking for a page.
  virtual void RunEvents() = 0;
};

/// @return null in a build that has no network
std::unique_ptr<Network> MakeNetwork();

}  // namespace cli
