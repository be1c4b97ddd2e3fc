#pragma once

#include <QDate>

namespace Vk_DocQuery {

/// The machine's present date. Everything that depends on today asks here.
QDate Today();

/// Puts another date in the place of today's until it is called with an invalid date; for tests.
void SetTodayForTests(QDate aDate);

}  // namespace Vk_DocQuery
