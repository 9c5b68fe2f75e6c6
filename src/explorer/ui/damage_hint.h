#pragma once

#include "base/error.h"
#include "ui/status_panels.h"

/// Tells in a status bar what to do about a damaged base; says nothing of other errors.
void ShowDamageHint(StatusPanels& status, const Error& error);
