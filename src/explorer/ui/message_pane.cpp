#include "explorer/ui/message_pane.h"

#include <QGridLayout>
#include <QVBoxLayout>

#include "explorer/links.h"
#include "text/strings.h"
#include "ui/controls.h"
#include "ui/text.h"
#include "ui/tool_tip.h"

namespace {

constexpr int kBodyMargin = 12;  // the body's own, so that all texts begin on one line
constexpr int kFieldMargin = 2;  // what a text box leaves before its text

// A date as long as they get: it is to be read without scrolling.
const QString kLongDate = QStringLiteral("Дата : понедельник, 30 Сентябрь 2002");

QFont Bold(QFont font) {
  font.setBold(true);
  return font;
}

}  // namespace

MessagePane::MessagePane(QWidget* parent) : QWidget(parent) {
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::Base);
  txtSubj_ = AddField("txtSubj", QStringLiteral("Тема сообщения"));
  txtData_ = AddField("txtData", QStringLiteral("Дата сообщения"));
  txtAuthor_ = AddField("txtAuthor", QStringLiteral("Автор сообщения"));
  txtAuthorMail_ = AddField("txtAuthorMail", QStringLiteral("E-Mail автора"));
  txtSubj_->setFont(Bold(txtSubj_->font()));
  body = Named<MessageBody>("body", this);
  body->setAccessibleName(QStringLiteral("Текст сообщения"));
  LayOut();
}

QLineEdit* MessagePane::AddField(const char* name, const QString& accessible_name) {
  auto* field = Named<QLineEdit>(name, this);
  field->setAccessibleName(accessible_name);
  field->setReadOnly(true);
  field->setFrame(false);
  return field;
}

void MessagePane::LayOut() {
  auto* fields = new QGridLayout;
  fields->setContentsMargins(kBodyMargin - kFieldMargin, 6, kBodyMargin - kFieldMargin, 4);
  fields->setHorizontalSpacing(12);
  fields->setVerticalSpacing(2);
  fields->addWidget(txtSubj_, 0, 0);
  fields->addWidget(txtData_, 0, 1);
  fields->addWidget(txtAuthor_, 1, 0);
  fields->addWidget(txtAuthorMail_, 1, 1);
  fields->setColumnStretch(0, 3);
  fields->setColumnStretch(1, 2);
  fields->setColumnMinimumWidth(1, txtData_->fontMetrics().horizontalAdvance(kLongDate) + 2 * kFieldMargin + 4);

  auto* rule = new QFrame(this);
  rule->setFrameStyle(QFrame::HLine | QFrame::Plain);
  rule->setForegroundRole(QPalette::Midlight);

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addLayout(fields);
  column->addWidget(rule);
  column->addWidget(body, 1);
  body->setMinimumHeight(0);
}

void MessagePane::Show(const MessageView& view, const QString& found) {
  const auto fill = [](QLineEdit* field, const std::string& text) {
    field->setText(FromCp1251(text));
    field->setCursorPosition(0);
    field->setToolTip(PlainToolTip(field->text()));
  };
  fill(txtSubj_, view.txtSubj);
  fill(txtData_, view.txtData);
  fill(txtAuthor_, view.txtAuthor);
  fill(txtAuthorMail_, view.txtAuthorMail);
  const std::string text = text::ReplaceAll(view.body, "\r\n", "\n");
  body->ShowText(FromCp1251(text), FindLinks(text));
  body->Mark(found);
}

QString MessagePane::AsText() const {
  QStringList lines;
  for (const QLineEdit* field : {txtSubj_, txtAuthor_, txtAuthorMail_, txtData_})
    if (!field->text().isEmpty()) lines.append(field->text());
  lines.append({QString(), body->toPlainText()});
  return lines.join(QLatin1Char('\n'));
}
