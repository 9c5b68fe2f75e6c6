#pragma once

#include <string>
#include <string_view>

#include <QString>

/// Where the core's texts (Windows-1251) and paths (bytes of the file system) meet the windows.

QString FromCp1251(std::string_view text);
/// Characters outside Windows-1251 become "?".
std::string ToCp1251(const QString& text);
/// Does the code page have all its characters?
bool FitsCp1251(const QString& text);

/// Paths never pass through the code page.
QString QStringFromPath(std::string_view path);
std::string PathFromQString(const QString& path);
