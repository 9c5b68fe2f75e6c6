#include "explorer/ui/message_body.h"

#include <algorithm>

#include <QApplication>
#include <QEvent>
#include <QTextBlock>
#include <QTextCursor>

#include "ui/text.h"

namespace {

constexpr int kMargin = 12;                                     // pixels around the text
constexpr int kReadableColumns = 120;                           // average characters a line
constexpr int kLineHeight = 115;                                // per cent of the font's own
constexpr double kSmallestSize = 6;                             // points
constexpr int kMostMarks = 1000;                                // nobody counts more, and each is painted
constexpr QRgb kMarker = 0xFFFFE066, kMarkedText = 0xFF000000;  // as a text marker does, on dark palettes too

}  // namespace

MessageBody::MessageBody(QWidget* parent) : QTextBrowser(parent) {
  setOpenLinks(false);
  setFrameShape(QFrame::NoFrame);
  setLineWrapMode(QTextEdit::FixedPixelWidth);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  document()->setDocumentMargin(kMargin);
  document()->setUndoRedoEnabled(false);
  connect(this, &QTextBrowser::anchorClicked, this, &MessageBody::LinkChosen);
}

void MessageBody::ShowText(const QString& text, std::vector<LinkSpan> links) {
  links_ = std::move(links);
  setPlainText(text);
  QTextCursor edit(document());
  edit.beginEditBlock();  // laid out once, not for each link
  SpaceLines();
  MarkLinks();
  edit.endEditBlock();
}

void MessageBody::Mark(const QString& found) {
  QTextEdit::ExtraSelection mark;
  mark.format.setBackground(QColor(kMarker));
  mark.format.setForeground(QColor(kMarkedText));
  QList<QTextEdit::ExtraSelection> marks;
  for (mark.cursor = document()->find(found); !mark.cursor.isNull() && marks.size() < kMostMarks;
       mark.cursor = document()->find(found, mark.cursor))
    marks.append(mark);
  setExtraSelections(marks);
  if (marks.isEmpty()) return;
  QTextCursor first = marks.front().cursor;
  first.setPosition(first.selectionStart());
  setTextCursor(first);
}

void MessageBody::SetTextSize(double points) {
  text_size_ = points;
  QFont sized = QApplication::font(this);
  if (points > 0) sized.setPointSizeF(std::max(points, kSmallestSize));
  setFont(sized);
}

void MessageBody::resizeEvent(QResizeEvent* event) {
  QTextBrowser::resizeEvent(event);
  FitLines();
}

void MessageBody::changeEvent(QEvent* event) {
  QTextBrowser::changeEvent(event);
  if (event->type() == QEvent::FontChange) FitLines();
  if (event->type() == QEvent::PaletteChange) MarkLinks();
}

// A forum's text never makes the program read a file or a page by itself.
void MessageBody::doSetSource(const QUrl&, QTextDocument::ResourceType) {}
QVariant MessageBody::loadResource(int, const QUrl&) { return {}; }

void MessageBody::SpaceLines() {
  QTextBlockFormat spaced;
  spaced.setLineHeight(kLineHeight, QTextBlockFormat::ProportionalHeight);
  QTextCursor all(document());
  all.select(QTextCursor::Document);
  all.mergeBlockFormat(spaced);
}

void MessageBody::MarkLinks() {
  for (const LinkSpan& link : links_) {
    QTextCharFormat look;
    look.setAnchor(true);
    look.setAnchorHref(FromCp1251(link.target));
    look.setForeground(palette().link());
    look.setFontUnderline(true);
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(link.start));
    cursor.setPosition(static_cast<int>(link.start + link.length), QTextCursor::KeepAnchor);
    cursor.mergeCharFormat(look);
  }
}

void MessageBody::FitLines() {
  const int readable = fontMetrics().averageCharWidth() * kReadableColumns + 2 * kMargin;
  setLineWrapColumnOrWidth(std::min(viewport()->width(), readable));
}
