#pragma once

#include <QSize>

/// What all pages share: the size below the header of the 1024 x 600 screen, and how often a page looks at
/// the record.
constexpr QSize PageSize(1024, 505);
constexpr int RefreshMs = 200;
