#pragma once

#include "base/error.h"

/// The number of the error that an action ends in, 0 when it ends well.
template <typename Action>
int ErrorOf(Action action) {
  try {
    action();
    return 0;
  } catch (const Error& error) {
    return error.number();
  }
}
