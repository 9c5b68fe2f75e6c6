#pragma once

#include <string>

/// What a web server answers, before it becomes bytes.
struct WebAnswer {
  int status = 200;
  std::string type = "text/html";
  std::string body;
};
