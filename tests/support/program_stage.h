#pragma once

#include "config/mdl_AZ.h"
#include "support/fixed_clock.h"
#include "support/temp_folder.h"

/// A program folder on the disk, its forum.ini and forum.log, on a day that stands still.
struct ProgramStage {
  explicit ProgramStage(FixedClock now = FixedClock(2002, 3, 15)) : clock_(now) {}

  TempFolder folder_;
  DiskFileSystem files_;
  FixedClock clock_;
  mdl_AZ::ForumIni ini_{files_, folder_.path()};
  mdl_AZ::ForumLog log_{ini_, files_, clock_};
};
