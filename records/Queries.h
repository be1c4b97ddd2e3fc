#pragma once

#include <Vk_DocQuery/Providers.h>
#include <Vk_DocQuery/RecordAnnouncements.h>

namespace Vk_Records {

/// Report forms of the open office.
class OfficeBlankQueries final : public Vk_DocQuery::BlankQueries {
public:
    std::shared_ptr<Vk_DocQuery::RecordCollection> GetTemplates(
        const Vk_DocQuery::LooseValue &aDateFrom, const Vk_DocQuery::LooseValue &aDateTo,
        bool aClasses) override;
    void GetTemplTypeAvailability(qint32 aKind, double aID,
                                  std::shared_ptr<Vk_DocQuery::Recordset> &rCategories,
                                  std::shared_ptr<Vk_DocQuery::Recordset> &rTimes) override;
    std::shared_ptr<Vk_DocQuery::Recordset> GetTemplTypeNames(double aID) override;
};

/// Accounting streams of the open office, in the order of their names.
class OfficeAccStreamQueries final : public Vk_DocQuery::DBQAccStream {
public:
    std::shared_ptr<Vk_DocQuery::RecordCollection> GetAccStreams(const QString &aFilter,
                                                                 qint32 aFlags) override;
};

/// Taxpayers of the open office, in the order of their names.
class OfficePersonQueries final : public Vk_DocQuery::PersonQueries {
public:
    std::shared_ptr<Vk_DocQuery::RecordCollection> GetPersons(const QString &aFilter,
                                                              qint32 aFlags) override;
    /// The persons who own a stream.
    std::shared_ptr<Vk_DocQuery::RecordCollection> GetTaxpayers() override;
};

/// Reads what is announced with one request and notes it.
class OfficeAnnouncements final : public Vk_DocQuery::RecordAnnouncements {
public:
    void AnnounceRecords(const QString &aClass, const std::vector<double> &aIDs) override;
    void AnnounceFormNames(const std::vector<double> &aIDs) override;
};

}  // namespace Vk_Records
