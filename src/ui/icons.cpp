#include "ui/icons.h"

#include <array>
#include <cmath>

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QRegularExpression>
#include <QSvgRenderer>

// A resource of a static library is reached only after this call, which must stand outside of any namespace.
static void InitResource() { Q_INIT_RESOURCE(icons); }

namespace {

struct IconFile {
  IconName name;
  const char* stem;
};

constexpr IconFile kFiles[] = {
    {IconName::kThreads, "threads"},
    {IconName::kBrokenThreads, "broken_threads"},
    {IconName::kDates, "dates"},
    {IconName::kAuthors, "authors"},
    {IconName::kResults, "results"},
    {IconName::kThreadStart, "thread_start"},
    {IconName::kNewThread, "new_thread"},
    {IconName::kReply, "reply"},
    {IconName::kBrokenReply, "broken_reply"},
    {IconName::kMessage, "message"},
    {IconName::kFoundMessage, "found_message"},
    {IconName::kYear, "year"},
    {IconName::kMonth, "month"},
    {IconName::kDay, "day"},
    {IconName::kAuthor, "author"},
    {IconName::kOpen, "open"},
    {IconName::kArchive, "archive"},
    {IconName::kDownload, "download"},
    {IconName::kRebuild, "rebuild"},
    {IconName::kSearch, "search"},
    {IconName::kEmail, "email"},
    {IconName::kSettings, "settings"},
    {IconName::kExport, "export"},
    {IconName::kAbout, "about"},
    {IconName::kDelete, "delete"},
    {IconName::kDeleteThread, "delete_thread"},
    {IconName::kStop, "stop"},
    {IconName::kLoading, "loading"},
    {IconName::kLoaded, "loaded"},
    {IconName::kNotFound, "not_found"},
    {IconName::kSkipped, "skipped"},
    {IconName::kFailed, "failed"},
};

consteval bool FilesFollowTheEnumeration() {
  for (std::size_t i = 0; i < std::size(kFiles); ++i)
    if (kFiles[i].name != static_cast<IconName>(i)) return false;
  return kFiles[std::size(kFiles) - 1].name == IconName::kFailed;
}
static_assert(FilesFollowTheEnumeration());

QByteArray ReadResource(const QString& path) {
  QFile file(path);
  const bool opened = file.open(QIODevice::ReadOnly);
  Q_ASSERT(opened);
  return opened ? file.readAll() : QByteArray();
}

QColor LineColour(QIcon::Mode mode) {
  const QPalette palette = QGuiApplication::palette();
  switch (mode) {
    case QIcon::Disabled: return palette.color(QPalette::Disabled, QPalette::Text);
    case QIcon::Selected: return palette.color(QPalette::HighlightedText);
    default: return palette.color(QPalette::Text);
  }
}

// The drawing in the colours of the mode. A disabled and a selected icon lose their accents, which
// would not read on a highlighted row.
QByteArray Coloured(QByteArray drawing, QIcon::Mode mode) {
  const QByteArray line = LineColour(mode).name().toLatin1();
  if (mode == QIcon::Disabled || mode == QIcon::Selected) {
    static const QRegularExpression accent(QStringLiteral("#[0-9a-f]{6}"));
    drawing = QString::fromLatin1(drawing).replace(accent, QString::fromLatin1(line)).toLatin1();
  }
  return drawing.replace("currentColor", line);
}

class PaletteIconEngine : public QIconEngine {
 public:
  explicit PaletteIconEngine(QString stem) : stem_(std::move(stem)) {}

  QIconEngine* clone() const override { return new PaletteIconEngine(stem_); }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const QString path = QStringLiteral(":/icons/%1.svg").arg(stem_);
    QSvgRenderer(Coloured(ReadResource(path), mode)).render(painter, rect);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return scaledPixmap(size, mode, state, 1.0);
  }

  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal scale) override {
    const QString key = QStringLiteral("icon/%1/%2/%3x%4@%5")
                            .arg(stem_, LineColour(mode).name())
                            .arg(size.width())
                            .arg(size.height())
                            .arg(scale) +
                        QChar(u'0' + mode);
    QPixmap drawn;
    if (QPixmapCache::find(key, &drawn)) return drawn;
    drawn = QPixmap(size);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    paint(&painter, drawn.rect(), mode, state);
    QPixmapCache::insert(key, drawn);
    return drawn;
  }

 private:
  QString stem_;
};

}  // namespace

QIcon Icon(IconName name) {
  InitResource();
  return QIcon(new PaletteIconEngine(QString::fromLatin1(kFiles[static_cast<std::size_t>(name)].stem)));
}

QIcon ProgramIcon() {
  InitResource();
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
    QPixmap drawn(size, size);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    QSvgRenderer(QStringLiteral(":/icons/quorvex.svg")).render(&painter);
    icon.addPixmap(drawn);
  }
  return icon;
}
