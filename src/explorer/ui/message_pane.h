#pragma once

#include <QLineEdit>
#include <QWidget>

#include "explorer/message_view.h"
#include "explorer/ui/message_body.h"

/// The lower pane of the main window: the header fields of a message, to be selected and copied, and
/// its body.
class MessagePane : public QWidget {
  Q_OBJECT
 public:
  explicit MessagePane(QWidget* parent = nullptr);
  /// @param found  a text to be marked in the body; may be empty
  void Show(const MessageView& view, const QString& found = {});
  void Clear() { Show({}); }
  /// What is on show, as a text to be pasted elsewhere.
  QString AsText() const;

  MessageBody* body;

 private:
  QLineEdit* AddField(const char* name, const QString& accessible_name);
  void LayOut();

  QLineEdit *txtSubj_, *txtData_, *txtAuthor_, *txtAuthorMail_;
};
