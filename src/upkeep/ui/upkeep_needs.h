#pragma once

#include "base/clock.h"
#include "base/file.h"
#include "config/mdl_AZ.h"
#include "ui/dialogs.h"

/// What the windows that look after bases work with; all of it outlives them.
struct UpkeepNeeds {
  FileSystem& files;
  const Clock& clock;
  const mdl_AZ::ForumIni& ini;
  Dialogs& dialogs;
};
