#pragma once

#include <Vk_DocQuery/Providers.h>

namespace Vk_Records {

/// Names of periods; needs no database.
class PeriodNames final : public Vk_DocQuery::VkRecFactory {
public:
    /// A code without a name gives a text that shows the code, so that a list never has an empty
    /// row.
    QString GetPeriodName(qint32 aMonthID) override;
};

}  // namespace Vk_Records
