#include "download_configured/transfer_states.h"

#include <cstddef>
#include <iterator>

#include "base/ru_literal.h"

namespace {

constexpr std::string_view kTexts[] = {
    "Ничего не происходит ..."_ru,    // 0
    "Поиск сервера ..."_ru,           // 1
    "Сервер найден ..."_ru,           // 2
    "Установка соединения ..."_ru,    // 3
    "Соединение установлено ..."_ru,  // 4
    "Отсылка запроса ..."_ru,         // 5
    "Запрос отправлен ..."_ru,        // 6
    "Получение ответа ..."_ru,        // 7
    "Ответ получен ..."_ru,           // 8
    "Разрыв соединения ..."_ru,       // 9
    "Соединение разорвано ..."_ru,    // 10
    "Ошибка соединения ..."_ru,       // 11
    "Ответ обработан ..."_ru,         // 12
};

}  // namespace

std::string_view TransferStateText(int state) {
  const auto index = static_cast<std::size_t>(state);  // a negative one is far behind the end
  return index < std::size(kTexts) ? kTexts[index] : std::string_view();
}
