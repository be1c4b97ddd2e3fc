#pragma once

#include <QSqlError>

#include "Address.h"

namespace Vk_Records {

/// What the user of a database is told when it refuses.
struct Refusal {
    qint32 Number = 0;
    QString Text;
};

/// What a refused request means.
Refusal RequestRefusal(const Address &aAddress, const QSqlError &aError);
/// What it means that a server could not be connected to. There is no code then, only words, in the
/// language of the server or of this program.
Refusal ConnectionRefusal(const Address &aAddress, const QSqlError &aError);

/// The file that was opened before is there no more.
QString GoneText(const Address &aAddress);
QString ForbiddenText(const Address &aAddress);
QString ForeignText(const Address &aAddress);

}  // namespace Vk_Records
