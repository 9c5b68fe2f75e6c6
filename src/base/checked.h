#pragma once

#include <concepts>
#include <limits>
#include <utility>

#include "base/error.h"

/// Arithmetic and narrowing that end in error 6 ("Переполнение") where the result does not fit.
template <std::integral Number>
Number CheckedAdd(Number a, Number b) {
  Number sum;
  if (__builtin_add_overflow(a, b, &sum)) ThrowOverflow();
  return sum;
}

template <std::integral Number>
Number CheckedSub(Number a, Number b) {
  Number difference;
  if (__builtin_sub_overflow(a, b, &difference)) ThrowOverflow();
  return difference;
}

template <std::integral Number>
Number CheckedMul(Number a, Number b) {
  Number product;
  if (__builtin_mul_overflow(a, b, &product)) ThrowOverflow();
  return product;
}

template <std::integral To, std::integral From>
To CheckedCast(From value) {
  if (!std::in_range<To>(value)) ThrowOverflow();
  return static_cast<To>(value);
}
