#pragma once

#include "jet/layout.h"
#include "jet/table_def.h"
#include "jet/value.h"

namespace sql {

/// A value as the column stores it: numbers become texts and texts numbers, fractions are rounded to
/// whole numbers. Null stays Null.
/// @throws ConversionError 3421 when the value is none of the column's kind, Error 3163 when it is too long
jet::Value ForColumn(jet::Version version, const jet::Column& column, jet::Value value);

}  // namespace sql
