#pragma once

#include <chrono>
#include <functional>

/// Calls back once, from the event loop that runs while a session waits for a page. Qt implements it in
/// download/ui/; tests ring when they like.
class Alarm {
 public:
  virtual ~Alarm() = default;
  /// Takes the place of what was set before. The call must throw nothing.
  virtual void Set(std::chrono::milliseconds after, std::function<void()> ring) = 0;
  virtual void Clear() = 0;
};
