#pragma once

#include <memory>

#include <QString>

#include <Vk_DocQuery/KeyedCollection.h>
#include <Vk_DocQuery/Records.h>

namespace Vk_DocQuery {

/// A tabular result, read forwards by field name, on the thread that asked for it. It belongs to
/// whoever asked.
class VK_DOCQUERY_EXPORT Recordset : public Object {
public:
    ~Recordset() override;
    /// Goes to the first row. May fail on an empty recordset.
    virtual void MoveFirst() = 0;
    /// Goes to the next row, or behind the last one.
    virtual void MoveNext() = 0;
    /// Whether it stands behind the last row.
    virtual bool EndOfData() const = 0;
    /// The field of the present row. Raises a failure for a name that is not there.
    virtual LooseValue Value(const QString &aField) const = 0;
};

/// Report forms. Class name "Vk_DBProvider.BlankQueries".
///
/// An object of this and of the two classes below is made once for each thread that asks, is asked
/// on that thread, and lives to its end. What it hands out belongs to whoever asked; null is a
/// defect of the supplier. What it raises goes up to whoever asked, and a window shows it.
class VK_DOCQUERY_EXPORT BlankQueries : public Object {
public:
    ~BlankQueries() override;
    /// With aClasses false the VkTemplate records that are valid on some day from aDateFrom to
    /// aDateTo, with true the VkTemplType records that have such a version. Null leaves a side
    /// open.
    virtual std::shared_ptr<RecordCollection> GetTemplates(const LooseValue &aDateFrom,
                                                           const LooseValue &aDateTo,
                                                           bool aClasses) = 0;
    /// Where and for whom a form exists. rCategories has the fields "TPCategory_ID",
    /// "AccStreamType", "AllowedForMainOrg", "AllowedForBranch"; rTimes has "the_year" and
    /// "month_id". aKind is 1.
    virtual void GetTemplTypeAvailability(qint32 aKind, double aID,
                                          std::shared_ptr<Recordset> &rCategories,
                                          std::shared_ptr<Recordset> &rTimes) = 0;
    /// The official full names of a form in the field "full_name".
    virtual std::shared_ptr<Recordset> GetTemplTypeNames(double aID) = 0;
};

/// Accounting streams. Class name "Vk_DBProvider.DBQAccStream".
class VK_DOCQUERY_EXPORT DBQAccStream : public Object {
public:
    ~DBQAccStream() override;
    /// All VkAccStream records. aFilter is empty, aFlags is 0.
    virtual std::shared_ptr<RecordCollection> GetAccStreams(const QString &aFilter,
                                                            qint32 aFlags) = 0;
};

/// Taxpayers. Class name "Vk_DBProvider.PersonQueries".
class VK_DOCQUERY_EXPORT PersonQueries : public Object {
public:
    ~PersonQueries() override;
    /// All VkPerson records. aFilter is empty, aFlags is 0.
    virtual std::shared_ptr<RecordCollection> GetPersons(const QString &aFilter, qint32 aFlags) = 0;
    /// The VkPerson records that hand in reports.
    virtual std::shared_ptr<RecordCollection> GetTaxpayers() = 0;
};

/// Names of periods. Class name "Vk_Records.VkRecFactory"; the library has one of its own.
class VK_DOCQUERY_EXPORT VkRecFactory : public Object {
public:
    ~VkRecFactory() override;
    /// Display text of a period code: 1 to 12 the months, 13 to 16 the quarters, 17 other period,
    /// 18 other documents, 19 half year, 20 full year, 21 letter or request, 24 document.
    virtual QString GetPeriodName(qint32 aMonthID) = 0;
};

/// Text files and paths. Class name "Vk_Lib.FilesLibrary"; the library has one of its own, which a
/// host need not replace: what it saves can be read again, and a failure leaves the old file.
class VK_DOCQUERY_EXPORT FilesLibrary : public Object {
public:
    ~FilesLibrary() override;
    /// Writes the text in that code page; an existing file is replaced as a whole or stays as it
    /// was. Raises a failure that says why it could not.
    virtual void SaveTextToFile(const QString &aText, const QString &aFileName,
                                qint32 aCodePage) = 0;
    /// The form of a long path that a window caption shows. The three further texts take the parts
    /// that were shown and left out: the head, the tail and the file name.
    virtual QString ShortenFilePath(const QString &aPath, QString &rHead, QString &rTail,
                                    QString &rName) = 0;
};

}  // namespace Vk_DocQuery
