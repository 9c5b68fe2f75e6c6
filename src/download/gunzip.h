#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Unpacks what a server squeezed with gzip: one member or several, one behind the other. Length and checksum are
/// verified, so that a piece of a page is never taken for the whole.
/// @param largest  bytes that may come out
/// @throws TransferError  not gzip, broken, cut off, or too large
std::string Gunzip(std::string_view squeezed, std::size_t largest);
