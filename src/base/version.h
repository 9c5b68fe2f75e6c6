#pragma once

/// The version of the system, "1.0.0": both programs are of it.
extern const char kProductVersion[];
