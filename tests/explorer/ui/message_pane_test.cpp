#include "explorer/ui/message_pane.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "base/ru_literal.h"

namespace {

TEST(MessagePane, ForeignMarkupIsTextAndLinksLeadWhereTheySay) {
  MessagePane pane;
  MessageView view;
  view.txtSubj = "Тема : <b>a</b> & b"_ru;
  view.body = "Первая строка\r\n<img src=file:///etc/passwd> http://a.example/b?c=1&d=2 и ещё\r\n\r\nхвост"_ru;
  pane.Show(view);
  pane.show();
  EXPECT_EQ(pane.AsText().toStdString(),
            "Тема : <b>a</b> & b\n\n"
            "Первая строка\n<img src=file:///etc/passwd> http://a.example/b?c=1&d=2 и ещё\n\nхвост");

  QSignalSpy chosen(pane.body, &MessageBody::LinkChosen);
  QTest::keyClick(pane.body, Qt::Key_Tab);
  EXPECT_EQ(pane.body->textCursor().selectedText().toStdString(), "http://a.example/b?c=1&d=2");
  QTest::keyClick(pane.body, Qt::Key_Return);
  ASSERT_EQ(chosen.size(), 1);
  EXPECT_EQ(chosen[0][0].toUrl().toString().toStdString(), "http://a.example/b?c=1&d=2");
}

TEST(MessagePane, ZoomIsTakenBackToTheChosenSize) {
  MessagePane pane;
  pane.body->SetTextSize(12);
  pane.body->zoomIn(2);
  EXPECT_EQ(pane.body->font().pointSize(), 14);
  pane.body->ResetZoom();
  EXPECT_EQ(pane.body->font().pointSize(), 12);
}

}  // namespace
