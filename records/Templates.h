#pragma once

#include <QHash>

#include <Vk_DocQuery/Providers.h>

#include "Connection.h"
#include "Row.h"

namespace Vk_Records {

/// What is read of a report form.
struct TemplTypeColumns {
    qint64 theID = 0;
    QString theKnd;
    QString theShortName;
    QString theIcon;
    bool theIsExcluded = false;

    /// Takes those of a row from aFirst on.
    void Read(const Row &aRow, int aFirst = 0);
};

/// A report form as it was read.
class TemplTypeRecord final : public Vk_DocQuery::VkTemplType, private TemplTypeColumns {
public:
    double ID() const override { return static_cast<double>(theID); }
    void SetID(double aID) override;
    QString KND() const override { return theKnd; }
    QString ShortName() const override { return theShortName; }
    bool IsExcludedFromSearch() const override { return theIsExcluded; }
    QString GetIconKey() const override { return theIcon; }

    using TemplTypeColumns::Read;
};

/// What is read of a version of a report form, with its form.
struct TemplateColumns {
    qint64 theID = 0;
    QDate theBegDate;
    QDate theEndDate;
    QString theName;
    QString theIcon;
    std::shared_ptr<TemplTypeRecord> theType;

    /// Takes those of a row; the form is that of aTypes, where it is put if it is not there.
    void Read(const Row &aRow, QHash<qint64, std::shared_ptr<TemplTypeRecord>> &rTypes);
};

/// A version of a report form as it was read.
class TemplateRecord final : public Vk_DocQuery::VkTemplate, private TemplateColumns {
public:
    double ID() const override { return static_cast<double>(theID); }
    void SetID(double aID) override;
    Vk_DocQuery::LooseValue BegDate() const override { return DateOrEmpty(theBegDate); }
    Vk_DocQuery::LooseValue EndDate() const override { return DateOrEmpty(theEndDate); }
    std::shared_ptr<Vk_DocQuery::VkTemplType> TemplateType() const override { return theType; }
    QString GetDisplayName() const override { return theName; }
    QString GetIconKey() const override { return theIcon; }

    using TemplateColumns::Read;

private:
    static Vk_DocQuery::LooseValue DateOrEmpty(QDate aDate) {
        if (aDate.isValid()) return aDate;
        return Vk_DocQuery::Empty();
    }
};

/// The versions that are valid on some day of the window, and the forms that have such a version,
/// in the order of the names of the forms. An invalid date leaves a side open. Versions of one form
/// share its record.
std::shared_ptr<Vk_DocQuery::RecordCollection> Versions(Connection &aConnection, QDate aFrom,
                                                        QDate aTo);
std::shared_ptr<Vk_DocQuery::RecordCollection> TemplTypes(Connection &aConnection, QDate aFrom,
                                                          QDate aTo);
/// Note the forms or versions that are about to be loaded one by one.
void AnnounceTemplTypes(const std::vector<double> &aIDs);
void AnnounceVersions(const std::vector<double> &aIDs);

}  // namespace Vk_Records
