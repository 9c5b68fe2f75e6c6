#pragma once

#include <vector>

#include <QTextBrowser>

#include "explorer/links.h"

/// The text of a message, to be read: plain text whatever it holds, in lines that are not too long
/// for the eye. Ctrl and the wheel change its size.
class MessageBody : public QTextBrowser {
  Q_OBJECT
 public:
  explicit MessageBody(QWidget* parent = nullptr);

  /// @param text   with LF as line break, which the positions of `links` count as one character. Links can be clicked,
  /// and reached with Tab and Return.
  void ShowText(const QString& text, std::vector<LinkSpan> links);
  /// Marks a text wherever it stands, letter case ignored, and brings the first place into sight.
  void Mark(const QString& found);
  /// @param points  0 = the size of the desktop's own font
  void SetTextSize(double points);
  /// Back to the size set last, whatever the wheel made of it.
  void ResetZoom() { SetTextSize(text_size_); }

 signals:
  void LinkChosen(const QUrl& target);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void doSetSource(const QUrl& url, QTextDocument::ResourceType type) override;
  QVariant loadResource(int type, const QUrl& name) override;

 private:
  void SpaceLines();
  void MarkLinks();
  void FitLines();

  std::vector<LinkSpan> links_;
  double text_size_ = 0;
};
