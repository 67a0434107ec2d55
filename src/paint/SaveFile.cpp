#include "paint/SaveFile.h"

#include <QSaveFile>

#include "paint/Text.h"

namespace vortan {

std::string SaveFile(const std::string& name, const QByteArray& data) {
    QSaveFile file(Q(name));
    // Devices and pipes cannot be replaced as a whole.
    file.setDirectWriteFallback(true);
    if (file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit()) return {};
    return "The file \"" + name + "\" could not be written: " + S(file.errorString()) + ".";
}

}  // namespace vortan
