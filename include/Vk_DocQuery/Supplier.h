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
    /// What a taxpayer can be.
    enum Kinds {
        Organization,   ///< an organisation
        Branch,         ///< a separate branch of an organisation; needs a ParentID
        PrivatePerson,  ///< a private person
    };

    double ID = 0;  ///< a whole number from 1 to 2147483647, which is what a query file brings back
    /// What it is.
    Kinds Kind = Organization;
    /// ИНН, the taxpayer number.
    QString Inn;
    /// КПП, the code of the reason of registration; may be empty.
    QString Kpp;
    /// The name that lists show and sort by.
    QString Name;
    QString OwnerName;           ///< in the column of the head organisation; empty: as Name
    double ParentID = 0;         ///< of a branch: the organisation that it belongs to
    bool IsMain = false;         ///< can be chosen as a head organisation
    bool HandsInReports = true;  ///< is one of the taxpayers who do
    QString IconKey;             ///< see PictureKeys.h; empty: that of the kind
};

/// What a supplier tells of an accounting stream.
struct StreamFacts {
    /// A whole number from 1 to 2147483647.
    double ID = 0;
    double PersonID = 0;  ///< of the taxpayer who owns it
    /// The name that lists show and sort by.
    QString Name;
    /// КПП, the code of the reason of registration; may be empty.
    QString Kpp;
    /// Codes of the controlling offices, as they are shown.
    QString OfficeCodes;
    /// See PictureKeys.h; empty: no picture.
    QString IconKey = QStringLiteral("acc_stream");
};

/// What a supplier tells of a report form.
struct FormFacts {
    /// A reporting period in which the form exists.
    struct Period {
        /// Of four digits, such as 2024.
        qint32 Year;
        qint32 Code;  ///< as VkRecFactory::GetPeriodName has it
    };
    /// Who hands the form in.
    struct Category {
        /// Kind of taxpayer, 1 to 9 without 7; docs/office-database.md names them.
        qint32 Taxpayers;
        /// Kind of stream, 1 to 9; docs/office-database.md names them.
        qint32 StreamType;
        /// Head organisations hand it in.
        bool IsForMain;
        /// Branches hand it in.
        bool IsForBranches;
    };

    /// A whole number from 1 to 2147483647.
    double ID = 0;
    /// The form's code, КНД; may be empty.
    QString Knd;
    /// The name that lists show and sort by.
    QString ShortName;
    /// Left out of the browser of report forms, and of nothing else.
    bool IsExcludedFromSearch = false;
    /// See PictureKeys.h; empty: no picture.
    QString IconKey = QStringLiteral("doc_blank");
    QStringList FullNames;  ///< the one that counts today first
    /// Where it exists, in any order.
    std::vector<Period> Periods;
    /// Who hands it in, in any order.
    std::vector<Category> Categories;
};

/// What a supplier tells of a version of a report form.
struct VersionFacts {
    /// A whole number from 1 to 2147483647.
    double ID = 0;
    /// ID of its form.
    double FormID = 0;
    QDate FirstDay;  ///< invalid: open
    /// Of validity; invalid: open.
    QDate LastDay;
    /// The name that lists show and sort by.
    QString Name;
    /// See PictureKeys.h; empty: no picture.
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

    /// All taxpayers.
    virtual std::vector<PersonFacts> Persons();
    /// All accounting streams.
    virtual std::vector<StreamFacts> Streams();
    /// All report forms.
    virtual std::vector<FormFacts> Forms();
    /// Forms without a version are not offered.
    virtual std::vector<VersionFacts> Versions();
};

/// Enters classes for all records and providers into the class registry, which keep the supplier.
/// Call it before the first window or file; see ClassRegistry.
VK_DOCQUERY_EXPORT void EnterSupplier(std::shared_ptr<Supplier> aSupplier);

}  // namespace Vk_DocQuery
