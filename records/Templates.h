#pragma once

#include <QHash>

#include <Vk_DocQuery/Providers.h>

#include "Connection.h"

namespace Vk_Records {

/// What is read of a report form.
struct TemplTypeColumns {
    double theID = 0;
    QString theKnd;
    QString theShortName;
    QString theIcon;
    bool theIsExcluded = false;
};

/// A report form as it was read.
class TemplTypeRecord final : public Vk_DocQuery::VkTemplType, private TemplTypeColumns {
public:
    double ID() const override { return theID; }
    void SetID(double aID) override;
    QString KND() const override { return theKnd; }
    QString ShortName() const override { return theShortName; }
    bool IsExcludedFromSearch() const override { return theIsExcluded; }
    QString GetIconKey() const override { return theIcon; }

    /// Takes five columns of templ_type from aFirst on.
    void Read(const QSqlQuery &aRow, int aFirst = 0);
};

/// What is read of a version of a report form, with its form.
struct TemplateColumns {
    double theID = 0;
    Vk_DocQuery::LooseValue theBegDate;
    Vk_DocQuery::LooseValue theEndDate;
    QString theName;
    QString theIcon;
    std::shared_ptr<TemplTypeRecord> theType;
};

/// A version of a report form as it was read.
class TemplateRecord final : public Vk_DocQuery::VkTemplate, private TemplateColumns {
public:
    double ID() const override { return theID; }
    void SetID(double aID) override;
    Vk_DocQuery::LooseValue BegDate() const override { return theBegDate; }
    Vk_DocQuery::LooseValue EndDate() const override { return theEndDate; }
    std::shared_ptr<Vk_DocQuery::VkTemplType> TemplateType() const override { return theType; }
    QString GetDisplayName() const override { return theName; }
    QString GetIconKey() const override { return theIcon; }

private:
    friend std::shared_ptr<Vk_DocQuery::RecordCollection> Versions(Connection &, QDate, QDate);
    void Read(const QSqlQuery &aRow);
};

/// The versions that are valid on some day of the window, and the forms that have such a version.
/// An invalid date leaves a side open. Versions of one form share its record.
std::shared_ptr<Vk_DocQuery::RecordCollection> Versions(Connection &aConnection, QDate aFrom,
                                                        QDate aTo);
std::shared_ptr<Vk_DocQuery::RecordCollection> TemplTypes(Connection &aConnection, QDate aFrom,
                                                          QDate aTo);

}  // namespace Vk_Records
