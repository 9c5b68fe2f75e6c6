#pragma once

#include <string_view>

#include <QUrl>

/// The address of a page as a URL. "http://" is put before an address without that scheme or https; blanks,
/// control characters and bytes from 80 hex on are escaped byte for byte, existing escapes stay.
/// @param address  Windows-1251
QUrl PageUrl(std::string_view address);
