#pragma once

#include <QIcon>

/// The program's pictures: one hand-drawn family on a 16-pixel grid.
enum class IconName {
  kThreads,  // top nodes of the tree
  kBrokenThreads,
  kDates,
  kAuthors,
  kResults,
  kThreadStart,  // nodes below them
  kNewThread,
  kReply,
  kBrokenReply,
  kMessage,
  kFoundMessage,
  kYear,
  kMonth,
  kDay,
  kAuthor,
  kOpen,  // commands
  kArchive,
  kDownload,
  kRebuild,
  kSearch,
  kEmail,
  kSettings,
  kExport,
  kAbout,
  kDelete,
  kDeleteThread,
  kStop,
  kLoading,  // states of a number in a download session
  kLoaded,
  kNotFound,
  kSkipped,
  kFailed,
};

/// Drawn at the size and the pixel density asked for, in the colours of the palette of the moment
/// of painting: lines in the text colour, accents that read on light and on dark. A disabled or a
/// selected icon is of one colour. Cheap to copy and to ask for again.
QIcon Icon(IconName name);

/// The picture of the program itself, for window frames and task lists.
QIcon ProgramIcon();
