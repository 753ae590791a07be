#pragma once

#include <QString>

// The opened file's size as the window shows it: "1000.00 bytes", "1.00 KB".
// Up to 1024 bytes stay in bytes; above, the value is divided by 1024 once and
// again while it is still above 1024, one unit further each time.
QString fileSizeText(qint64 bytes);
