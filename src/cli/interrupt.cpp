#include "cli/interrupt.h"

#include <signal.h>

#include <initializer_list>

namespace cli {
namespace {

volatile sig_atomic_t asked = 0;

void Ask(int) { asked = 1; }

void Handle(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);  // once: the next signal does what it always does
  for (const int signal : {SIGINT, SIGTERM}) sigaction(signal, &action, nullptr);
}

}  // namespace

Interrupt::Interrupt() {
  asked = 0;
  Handle(Ask);
}

Interrupt::~Interrupt() { Handle(SIG_DFL); }

bool Interrupt::Asked() const { return asked != 0; }

}  // namespace cli
