#pragma once

namespace cli {

/// While one lives, the first SIGINT or SIGTERM only asks the work to stop; the second ends the program at once, as
/// usual. One at a time.
class Interrupt {
 public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  bool Asked() const;
};

}  // namespace cli
