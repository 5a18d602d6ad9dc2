#pragma once

#include <QIcon>

namespace LXApplicationIcon {

// The application's icon; `badged` adds the red dot of a recording in
// progress to its top right corner.
QIcon icon(bool badged);

} // namespace LXApplicationIcon
