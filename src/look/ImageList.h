#pragma once

#include <vector>

#include <QHash>
#include <QIcon>
#include <QString>

namespace Vk_DocQuery {

/// Pictures by key, in the order of adding. Keys compare exactly.
class ImageList {
public:
    /// Raises KeyAlreadyPresent.
    void Add(const QString &aKey, const QIcon &aPicture);
    int Count() const { return static_cast<int>(theKeys.size()); }
    /// aIndex counts from 0.
    const QString &KeyAt(int aIndex) const { return theKeys[static_cast<std::size_t>(aIndex)]; }
    bool Contains(const QString &aKey) const { return thePictures.contains(aKey); }
    /// Raises InvalidArgument for a key that is not in the list.
    const QIcon &Picture(const QString &aKey) const;

private:
    std::vector<QString> theKeys;
    QHash<QString, QIcon> thePictures;
};

}  // namespace Vk_DocQuery
