#include "foundation/Clock.h"

namespace Vk_DocQuery {

namespace {

QDate theFixedToday;

}  // namespace

QDate Today() {
    return theFixedToday.isValid() ? theFixedToday : QDate::currentDate();
}

void SetTodayForTests(QDate aDate) {
    theFixedToday = aDate;
}

}  // namespace Vk_DocQuery
