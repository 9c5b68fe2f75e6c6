#include "base/version.h"

const char kProductVersion[] = QUORVEX_VERSION;
