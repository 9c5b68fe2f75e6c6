#pragma once

#include <QString>

/// A tool tip that shows `text` as it is, in lines of a comfortable length: bare text that looks like
/// markup would be taken for it. An empty text shows none.
inline QString PlainToolTip(const QString& text) {
  return text.isEmpty() ? QString() : QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped());
}
