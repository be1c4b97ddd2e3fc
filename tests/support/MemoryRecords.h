#pragma once

#include <functional>
#include <map>
#include <vector>

#include <Vk_DocQuery/Providers.h>

namespace VkTests {

using Vk_DocQuery::LooseValue;

struct PersonFacts {
    double ID = 0;
    QString Inn;
    QString Kpp;
    QString Name;
    bool IsOrganization = true;
    double Parent = 0;  ///< 0: no parent, no branch
    bool IsMain = false;
    bool IsTaxpayer = true;
    QString Icon = QStringLiteral("org");
};

struct StreamFacts {
    double ID = 0;
    double Person = 0;  ///< 0: a stream without a person
    QString Name;
    QString Kpp;
    QString Offices;
    QString Icon = QStringLiteral("acc_stream");
};

struct ClassFacts {
    double ID = 0;
    QString KND;
    QString ShortName;
    bool Excluded = false;
    QString Icon = QStringLiteral("doc_blank");
    std::vector<LooseValue> FullNames;
};

struct VersionFacts {
    double ID = 0;
    double Class = 0;
    LooseValue BegDate;
    LooseValue EndDate;
    QString Name;
    QString Icon = QStringLiteral("doc");
};

/// Rows of a recordset by field name.
using Rows = std::vector<std::map<QString, LooseValue>>;

/// A supplier of records that keeps everything in memory. It is made of the installed headers
/// alone, as any host's own supplier would be.
struct MemoryOffice {
    std::vector<PersonFacts> Persons;
    std::vector<StreamFacts> Streams;
    std::vector<ClassFacts> Classes;
    std::vector<VersionFacts> Versions;
    std::map<double, Rows> Categories;  ///< by class
    std::map<double, Rows> Times;       ///< by class
    QString Absent;                     ///< the operation or record member that gives nothing
    bool CategoriesAbsent = false;
    bool TimesAbsent = false;
    LooseValue AskedFrom, AskedTo;  ///< the window of the last GetTemplates
    /// Collections of persons and of forms come without keys and may repeat one.
    bool Unkeyed = false;

    /// Called with the name of every operation and record member, before it does its work: counts,
    /// or raises.
    std::function<void(const QString &aMember)> OnCall;

    /// The office of all tests of this process: the accessors keep their instances, so they all
    /// read it.
    static MemoryOffice &The();
    /// Puts a small office in place and enters the classes.
    static void Install();
    /// Empties the office.
    static void Clear();
};

std::shared_ptr<Vk_DocQuery::VkPerson> MakePerson(double aID);
std::shared_ptr<Vk_DocQuery::VkAccStream> MakeStream(double aID);
std::shared_ptr<Vk_DocQuery::VkTemplType> MakeClass(double aID);
std::shared_ptr<Vk_DocQuery::VkTemplate> MakeVersion(double aID);

}  // namespace VkTests
