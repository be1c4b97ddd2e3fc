#pragma once

#include <Vk_DocQuery/Providers.h>

namespace Vk_DocQuery {

/// Names of periods, as long as no host has entered a factory of its own.
class PeriodNames final : public VkRecFactory {
public:
    /// A code without a name gives a text that shows the code, so that a list never has an empty
    /// row.
    QString GetPeriodName(qint32 aMonthID) override;
};

}  // namespace Vk_DocQuery
