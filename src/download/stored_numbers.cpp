#include "download/stored_numbers.h"

#include "base/ru_literal.h"

void StoredNumbers::SetNumber(std::string_view field, std::int32_t number) {
  records_.SetNumber(field, number);
  if (field == "Код"_ru) number_ = number;
}

void StoredNumbers::Update() {
  records_.Update();
  numbers_.push_back(number_);
}
