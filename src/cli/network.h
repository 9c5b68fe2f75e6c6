#pragma once

#include <memory>

#include "download/page_fetcher.h"

namespace cli {

/// Where a command gets its pages from. @return null in a build that has no network
std::unique_ptr<PageFetcher> MakePageFetcher();

}  // namespace cli
