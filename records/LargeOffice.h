#pragma once

#include <QString>

namespace Vk_Records {

struct OfficeSize {
    qsizetype Persons = 0;
    qsizetype Streams = 0;  ///< needs persons
    qsizetype Forms = 0;    ///< each with three versions
};

/// Makes a new database with that many records, the same ones each time. Raises
/// Vk_DocQuery::Failure, also for a database that is there already.
void MakeLargeOffice(const QString &aAddress, const OfficeSize &aSize);

/// Makes a new database with the invented office to try things on. Raises the same.
void MakeSampleOffice(const QString &aAddress);

}  // namespace Vk_Records
