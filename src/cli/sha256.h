#pragma once

#include <string>
#include <string_view>

namespace cli {

/// SHA-256 (FIPS 180-4) in lower-case hexadecimal.
std::string Sha256(std::string_view bytes);

}  // namespace cli
