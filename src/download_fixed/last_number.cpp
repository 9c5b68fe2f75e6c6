#include "download_fixed/last_number.h"

#include <string>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download/session_parts.h"
#include "download_fixed/fixed_forum.h"
#include "download_fixed/rts_an.h"
#include "text/numbers.h"

namespace {

void Begin(const FixedDownload& with) {
  ShowRunning(with.view);
  with.Bar("Получаю номер последнего сообщения ..."_ru);
}

std::string PageOrEmpty(const FixedDownload& with, std::string_view address) {
  try {
    return with.inet.OpenUrl(address, PageFetcher::kDefaultTimeout);
  } catch (const TransferError&) {
    return {};
  }
}

std::int32_t ReadNumber(std::int32_t (*read)(std::string_view), std::string_view page) {
  try {
    return read(page);
  } catch (const Error&) {  // no forum has that many messages
    return 0;
  }
}

void TellLast(const FixedDownload& with, std::int32_t last) { with.Bar(Cat("Последнее сообщение - "_ru, last)); }

void TellWrong(const FixedDownload& with) {
  with.Bar("На форуме неверный номер последнего сообщения"_ru);
  with.view.SetHint("Либо на форуме произошел сбой, либо ошибка в mdb файле (удалите лишние сообщения вручную)"_ru);
}

std::int32_t End(const FixedDownload& with, std::int32_t last) {
  if (last != 0) {
    TellLast(with, last);
  } else {
    with.Bar("Остановлено. Проверьте соединение."_ru);
    with.view.SetHint("Невозможно загрузить номер последнего сообщения. Проверьте соединение..."_ru);
  }
  ShowIdle(with.view);
  return last;
}

}  // namespace

std::int32_t GetLastKDV(const FixedDownload& with) {
  Begin(with);
  const std::string page = PageOrEmpty(with, Cat(KdvAddress(with.ini), "/data.txt"));
  const std::int32_t last = ReadNumber(text::LenientLong, page);
  TellLast(with, last);  // whatever the base holds; kept so
  return End(with, last);
}

std::int32_t GetLastRtsAn(const FixedDownload& with) {
  Begin(with);
  with.view.SetHourglass(true);
  const std::string page = PageOrEmpty(with, RtsAnAddress(with.ForumSubHost));
  with.view.SetHourglass(false);
  const std::int32_t last = ReadNumber(rts_an::HighestNumber, page);
  if (last < with.GetFirst())
    TellWrong(with);
  else
    TellLast(with, last);
  return End(with, last);
}
