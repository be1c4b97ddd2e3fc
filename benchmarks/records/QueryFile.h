#pragma once

#include <QByteArray>
#include <QString>

namespace VkBench {

/// The identities 1 to aCount in an order that is none of the tables, with commas between.
QByteArray ScatteredIDs(int aCount);

/// Writes a query file with streams of these identities into the folder.
QString WriteQueryFile(const QString &aFolder, int aCount);

}  // namespace VkBench
