#pragma once

#include <QHash>

#include <Vk_DocQuery/Providers.h>

#include "Connection.h"

namespace Vk_Records {

/// A report form as it was read.
class TemplTypeRecord final : public Vk_DocQuery::VkTemplType {
public:
    double ID() const override { return theID; }
    void SetID(double aID) override;
    QString KND() const override { return theKnd; }
    QString ShortName() const override { return theShortName; }
    bool IsExcludedFromSearch() const override { return theIsExcluded; }
    QString GetIconKey() const override { return theIcon; }

    /// Takes five columns of templ_type from aFirst on.
    void Read(const QSqlQuery &aRow, int aFirst = 0);

private:
    double theID = 0;
    QString theKnd;
    QString theShortName;
    QString theIcon;
    bool theIsExcluded = false;
};

/// A version of a report form as it was read, with its form.
class TemplateRecord final : public Vk_DocQuery::VkTemplate {
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

    double theID = 0;
    Vk_DocQuery::LooseValue theBegDate;
    Vk_DocQuery::LooseValue theEndDate;
    QString theName;
    QString theIcon;
    std::shared_ptr<TemplTypeRecord> theType;
};

/// The versions that are valid on some day of the window, and the forms that have such a version.
/// An invalid date leaves a side open. Versions of one form share its record.
std::shared_ptr<Vk_DocQuery::RecordCollection> Versions(Connection &aConnection, QDate aFrom,
                                                        QDate aTo);
std::shared_ptr<Vk_DocQuery::RecordCollection> TemplTypes(Connection &aConnection, QDate aFrom,
                                                          QDate aTo);

}  // namespace Vk_Records
