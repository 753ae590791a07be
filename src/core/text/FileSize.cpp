#include "FileSize.h"

#include <array>

QString fileSizeText(qint64 bytes) {
    static const std::array<const char*, 5> units = {"bytes", "KB", "MB", "GB", "TB"};
    double value = double(bytes);
    std::size_t unit = 0;
    if (bytes >= 1025) {
        do {
            value *= 1.0 / 1024.0;
            ++unit;
        } while (value > 1024.0 && unit + 1 < units.size());
    }
    return QString::asprintf("%4.2f %s", value, units[unit]);
}
