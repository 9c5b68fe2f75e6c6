#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// The head of an HTTP request; a body is not read.
struct HttpRequest {
  static constexpr std::size_t kLargest = 16 * 1024;

  std::string method;
  std::string target;      // path and query
  int minor_version = -1;  // of HTTP/1.x; -1: the request form without a version
  bool keeps_connection = false;

  /// Takes the first whole request off the front of what a client sent; none as long as its end is missing.
  /// The method of what is no request is empty.
  static std::optional<HttpRequest> Take(std::string& received);
};
