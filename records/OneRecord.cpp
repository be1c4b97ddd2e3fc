#include "OneRecord.h"

#include <algorithm>

namespace Vk_Records {

QString TextOfIDs(const Connection &aConnection, const std::vector<double> &aIDs) {
    std::vector<qint64> ids;
    ids.reserve(aIDs.size());
    for (const double id : aIDs) {
        if (const auto stored = StoredID(id)) ids.push_back(*stored);
    }
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    if (ids.empty()) return QString();
    QByteArray text;
    text.reserve(static_cast<qsizetype>(ids.size()) * 11);
    for (const qint64 id : ids)
        text += (text.isEmpty() ? QByteArray() : ",") + QByteArray::number(id);
    const bool isServer = aConnection.Where().IsServer;
    return QString::fromLatin1((isServer ? "{" : "[") + text + (isServer ? "}" : "]"));
}

}  // namespace Vk_Records
