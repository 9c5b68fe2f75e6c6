#pragma once

/// What a page check finds.
namespace page_code {
inline constexpr int kNotLoaded = 0;  // nothing came, or a proxy's report
inline constexpr int kMessage = 1;
inline constexpr int kNoSuchMessage = 2;
}  // namespace page_code
