#include "explorer/ui/damage_hint.h"

void ShowDamageHint(StatusPanels& status, const Error& error) {
  if (dynamic_cast<const FormatError*>(&error) == nullptr) return;
  status.SetPanel(1,
                  QStringLiteral("База повреждена. Команда «Файл — Проверить базу» скажет, что в ней не так, и поможет "
                                 "спасти сообщения"));
}
