#pragma once

#include <memory>
#include <vector>

#include <QDate>
#include <QString>
#include <QStringList>

#include <Vk_DocQuery/Export.h>

namespace Vk_DocQuery {

/// What a supplier tells of a taxpayer.
struct PersonFacts {
    enum Kinds { Organization, Branch, PrivatePerson };

    double ID = 0;  ///< a whole number from 1 to 2147483647, which is what a query file brings back
    Kinds Kind = Organization;
    QString Inn;
    QString Kpp;
    QString Name;
    QString OwnerName;           ///< in the column of the head organisation; empty: as Name
    double ParentID = 0;         ///< of a branch: the organisation that it belongs to
    bool IsMain = false;         ///< can be chosen as a head organisation
    bool HandsInReports = true;  ///< is one of the taxpayers who do
    QString IconKey;             ///< see PictureKeys.h; empty: that of the kind
};

/// What a supplier tells of an accounting stream.
struct StreamFacts {
    double ID = 0;
    double PersonID = 0;  ///< of the taxpayer who owns it
    QString Name;
    QString Kpp;
    QString OfficeCodes;
    QString IconKey = QStringLiteral("acc_stream");
};

/// What a supplier tells of a report form.
struct FormFacts {
    /// A reporting period in which the form exists.
    struct Period {
        qint32 Year;
        qint32 Code;  ///< as VkRecFactory::GetPeriodName has it
    };
    /// Who hands the form in.
    struct Category {
        qint32 Taxpayers;
        qint32 StreamType;
        bool IsForMain;
        bool IsForBranches;
    };

    double ID = 0;
    QString Knd;
    QString ShortName;
    bool IsExcludedFromSearch = false;
    QString IconKey = QStringLiteral("doc_blank");
    QStringList FullNames;  ///< the one that counts today first
    std::vector<Period> Periods;
    std::vector<Category> Categories;
};

/// What a supplier tells of a version of a report form.
struct VersionFacts {
    double ID = 0;
    double FormID = 0;
    QDate FirstDay;  ///< invalid: open
    QDate LastDay;
    QString Name;
    QString IconKey = QStringLiteral("doc_blank");
};

/// The short road for a program with records of its own: it tells the facts, and the library makes
/// record classes and providers of them. What is not overridden is empty. Each is asked on the
/// thread of the windows, whenever a window or a query file needs records, for all of its kind; the
/// order is that in which they are offered. What a member raises goes up to whoever asked.
///
/// Whoever has a great many records, or wants a class of another kind, enters classes of its own
/// (ClassRegistry.h), all of them or some in place of those that EnterSupplier has entered.
class VK_DOCQUERY_EXPORT Supplier {
public:
    Supplier();
    virtual ~Supplier();
    Q_DISABLE_COPY_MOVE(Supplier)

    virtual std::vector<PersonFacts> Persons();
    virtual std::vector<StreamFacts> Streams();
    virtual std::vector<FormFacts> Forms();
    /// Forms without a version are not offered.
    virtual std::vector<VersionFacts> Versions();
};

/// Enters classes for all records and providers into the class registry, which keep the supplier.
/// Call it before the first window or file; see ClassRegistry.
VK_DOCQUERY_EXPORT void EnterSupplier(std::shared_ptr<Supplier> aSupplier);

}  // namespace Vk_DocQuery
