#include "cli/network.h"

std::unique_ptr<PageFetcher> cli::MakePageFetcher() { return nullptr; }
