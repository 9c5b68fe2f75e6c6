#include "ui/icons.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QImage>
#include <QPalette>

#include "support/offscreen_app.h"

namespace {

const auto* const app = testing::AddGlobalTestEnvironment(new OffscreenApp);

/// The mean brightness (0-255) of what is drawn; -1 when nothing is.
double Brightness(IconName name, QIcon::Mode mode = QIcon::Normal) {
  const QImage drawn = Icon(name).pixmap(QSize(16, 16), 2.0, mode).toImage();
  double sum = 0, weight = 0;
  for (int y = 0; y < drawn.height(); ++y)
    for (int x = 0; x < drawn.width(); ++x) {
      const QColor colour = drawn.pixelColor(x, y);
      sum += double{colour.alphaF()} * qGray(colour.rgb());
      weight += double{colour.alphaF()};
    }
  return weight < 20 ? -1 : sum / weight;
}

TEST(Icons, EachIsDrawnAtTheDensityAskedFor) {
  for (int i = 0; i <= static_cast<int>(IconName::kFailed); ++i) {
    EXPECT_GE(Brightness(static_cast<IconName>(i)), 0) << i;
    EXPECT_EQ(Icon(static_cast<IconName>(i)).pixmap(QSize(16, 16), 2.0).size(), QSize(32, 32)) << i;
  }
  EXPECT_FALSE(ProgramIcon().pixmap(64).isNull());
}

TEST(Icons, LinesFollowThePalette) {
  const QPalette before = QGuiApplication::palette();
  QPalette light = before, dark = before;
  light.setColor(QPalette::Active, QPalette::Text, Qt::black);
  dark.setColor(QPalette::Active, QPalette::Text, Qt::white);
  for (const IconName name : {IconName::kThreads, IconName::kReply, IconName::kSearch, IconName::kSkipped}) {
    QGuiApplication::setPalette(light);
    const double on_light = Brightness(name);
    QGuiApplication::setPalette(dark);
    EXPECT_GT(Brightness(name), on_light + 60) << static_cast<int>(name);
  }
  QGuiApplication::setPalette(before);
}

}  // namespace
