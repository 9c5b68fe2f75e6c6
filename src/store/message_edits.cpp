#include "store/message_edits.h"

#include "base/cat.h"
#include "base/ru_literal.h"

std::string DeleteStatement(std::int32_t number) { return Cat("DELETE * FROM База WHERE Код="_ru, number); }
