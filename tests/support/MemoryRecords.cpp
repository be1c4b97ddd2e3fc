#include "support/MemoryRecords.h"

#include <algorithm>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>

namespace VkTests {

using namespace Vk_DocQuery;

namespace {

void Called(const char *aMember) {
    const auto hook = MemoryOffice::The().OnCall;
    if (hook) hook(QString::fromLatin1(aMember));
}

template <class Facts>
const Facts &FactsOf(const std::vector<Facts> &aAll, double aID, const char *aClass) {
    const auto found =
        std::find_if(aAll.begin(), aAll.end(), [=](const Facts &facts) { return facts.ID == aID; });
    if (found == aAll.end()) {
        throw Failure(1, QStringLiteral("MemoryRecords"),
                      QStringLiteral("no %1 with ID %2").arg(QLatin1String(aClass)).arg(aID));
    }
    return *found;
}

class MemoryPerson : public VkPerson {
public:
    double ID() const override {
        Called("VkPerson.ID");
        return theFacts.ID;
    }
    void SetID(double aID) override {
        Called("VkPerson.SetID");
        theFacts = FactsOf(MemoryOffice::The().Persons, aID, "VkPerson");
    }
    QString Inn() const override {
        Called("VkPerson.Inn");
        return theFacts.Inn;
    }
    QString Kpp() const override {
        Called("VkPerson.Kpp");
        return theFacts.Kpp;
    }
    bool IsBranch() const override {
        Called("VkPerson.IsBranch");
        return theFacts.Parent != 0;
    }
    bool IsOrganization() const override {
        Called("VkPerson.IsOrganization");
        return theFacts.IsOrganization;
    }
    std::shared_ptr<VkPerson> GetParentOrganization() const override {
        Called("VkPerson.GetParentOrganization");
        if (MemoryOffice::The().Absent == u"VkPerson.GetParentOrganization") return nullptr;
        auto parent = std::make_shared<MemoryPerson>();
        if (theFacts.Parent != 0) parent->SetID(theFacts.Parent);
        return parent;
    }
    QString GetDisplayName() const override {
        Called("VkPerson.GetDisplayName");
        return theFacts.Name;
    }
    QString GetDisplayNameAsAccPerson() const override {
        Called("VkPerson.GetDisplayNameAsAccPerson");
        return theFacts.Name + QStringLiteral(" (") + theFacts.Inn + u')';
    }
    QString GetIconKeyAsAccPerson() const override {
        Called("VkPerson.GetIconKeyAsAccPerson");
        return theFacts.Icon;
    }
    bool IsMainOrganization() const override {
        Called("VkPerson.IsMainOrganization");
        return theFacts.IsMain;
    }

    PersonFacts theFacts;
};

class MemoryStream : public VkAccStream {
public:
    double ID() const override {
        Called("VkAccStream.ID");
        return theFacts.ID;
    }
    void SetID(double aID) override {
        Called("VkAccStream.SetID");
        theFacts = FactsOf(MemoryOffice::The().Streams, aID, "VkAccStream");
    }
    std::shared_ptr<VkPerson> Person() const override {
        Called("VkAccStream.Person");
        if (MemoryOffice::The().Absent == u"VkAccStream.Person") return nullptr;
        if (theFacts.Person == 0)
            throw Failure(91, QStringLiteral("MemoryRecords"),
                          QStringLiteral("the stream has no person"));
        return MakePerson(theFacts.Person);
    }
    QString DisplayName() const override {
        Called("VkAccStream.DisplayName");
        return theFacts.Name;
    }
    QString Kpp() const override {
        Called("VkAccStream.Kpp");
        return theFacts.Kpp;
    }
    QString GetIconKey() const override {
        Called("VkAccStream.GetIconKey");
        return theFacts.Icon;
    }
    QString GetOfficeCodeForDisplay() const override {
        Called("VkAccStream.GetOfficeCodeForDisplay");
        return theFacts.Offices;
    }

    StreamFacts theFacts;
};

class MemoryClass : public VkTemplType {
public:
    double ID() const override {
        Called("VkTemplType.ID");
        return theFacts.ID;
    }
    void SetID(double aID) override {
        Called("VkTemplType.SetID");
        theFacts = FactsOf(MemoryOffice::The().Classes, aID, "VkTemplType");
    }
    QString KND() const override {
        Called("VkTemplType.KND");
        return theFacts.KND;
    }
    QString ShortName() const override {
        Called("VkTemplType.ShortName");
        return theFacts.ShortName;
    }
    bool IsExcludedFromSearch() const override {
        Called("VkTemplType.IsExcludedFromSearch");
        return theFacts.Excluded;
    }
    QString GetIconKey() const override {
        Called("VkTemplType.GetIconKey");
        return theFacts.Icon;
    }

    ClassFacts theFacts;
};

class MemoryVersion : public VkTemplate {
public:
    double ID() const override {
        Called("VkTemplate.ID");
        return theFacts.ID;
    }
    void SetID(double aID) override {
        Called("VkTemplate.SetID");
        theFacts = FactsOf(MemoryOffice::The().Versions, aID, "VkTemplate");
    }
    LooseValue BegDate() const override {
        Called("VkTemplate.BegDate");
        return theFacts.BegDate;
    }
    LooseValue EndDate() const override {
        Called("VkTemplate.EndDate");
        return theFacts.EndDate;
    }
    std::shared_ptr<VkTemplType> TemplateType() const override {
        Called("VkTemplate.TemplateType");
        if (MemoryOffice::The().Absent == u"VkTemplate.TemplateType") return nullptr;
        return MakeClass(theFacts.Class);
    }
    QString GetDisplayName() const override {
        Called("VkTemplate.GetDisplayName");
        return theFacts.Name;
    }
    QString GetIconKey() const override {
        Called("VkTemplate.GetIconKey");
        return theFacts.Icon;
    }

    VersionFacts theFacts;
};

class MemoryRecordset : public Recordset {
public:
    explicit MemoryRecordset(Rows aRows) : theRows(std::move(aRows)) {}
    void MoveFirst() override {
        if (theRows.empty())
            throw Failure(3021, QStringLiteral("MemoryRecords"),
                          QStringLiteral("the recordset is empty"));
        thePosition = 0;
    }
    void MoveNext() override { ++thePosition; }
    bool EndOfData() const override { return thePosition >= theRows.size(); }
    LooseValue Value(const QString &aField) const override {
        return theRows.at(thePosition).at(aField);
    }

private:
    Rows theRows;
    std::size_t thePosition = 0;
};

bool IsInWindow(const VersionFacts &aVersion, const LooseValue &aFrom, const LooseValue &aTo) {
    const bool endsBefore = IsDate(aVersion.EndDate) && IsDate(aFrom) &&
                            std::get<QDate>(aVersion.EndDate) < std::get<QDate>(aFrom);
    const bool beginsAfter = IsDate(aVersion.BegDate) && IsDate(aTo) &&
                             std::get<QDate>(aVersion.BegDate) > std::get<QDate>(aTo);
    return !endsBefore && !beginsAfter;
}

class MemoryBlankQueries : public BlankQueries {
public:
    std::shared_ptr<RecordCollection> GetTemplates(const LooseValue &aFrom, const LooseValue &aTo,
                                                   bool aClasses) override {
        Called("GetTemplates");
        MemoryOffice::The().AskedFrom = aFrom;
        MemoryOffice::The().AskedTo = aTo;
        if (MemoryOffice::The().Absent == u"GetTemplates") return nullptr;
        auto result = std::make_shared<RecordCollection>();
        for (const VersionFacts &facts : MemoryOffice::The().Versions) {
            if (!IsInWindow(facts, aFrom, aTo)) continue;
            if (aClasses && MemoryOffice::The().Unkeyed)
                result->Add(MakeClass(facts.Class));
            else if (aClasses)
                result->AddIfAbsent(MakeClass(facts.Class), ObjectKey(facts.Class));
            else
                result->Add(MakeVersion(facts.ID), ObjectKey(facts.ID));
        }
        return result;
    }
    void GetTemplTypeAvailability(qint32 aKind, double aID, std::shared_ptr<Recordset> &rCategories,
                                  std::shared_ptr<Recordset> &rTimes) override {
        Called("GetTemplTypeAvailability");
        MemoryOffice &office = MemoryOffice::The();
        rCategories.reset();
        rTimes.reset();
        if (aKind != 1) return;
        if (!office.CategoriesAbsent)
            rCategories = std::make_shared<MemoryRecordset>(office.Categories[aID]);
        if (!office.TimesAbsent) rTimes = std::make_shared<MemoryRecordset>(office.Times[aID]);
    }
    std::shared_ptr<Recordset> GetTemplTypeNames(double aID) override {
        Called("GetTemplTypeNames");
        if (MemoryOffice::The().Absent == u"GetTemplTypeNames") return nullptr;
        Rows rows;
        for (const LooseValue &name :
             FactsOf(MemoryOffice::The().Classes, aID, "VkTemplType").FullNames)
            rows.push_back({{QStringLiteral("full_name"), name}});
        return std::make_shared<MemoryRecordset>(rows);
    }
};

class MemoryStreamQueries : public DBQAccStream {
public:
    std::shared_ptr<RecordCollection> GetAccStreams(const QString &aFilter,
                                                    qint32 aFlags) override {
        Called("GetAccStreams");
        if (MemoryOffice::The().Absent == u"GetAccStreams") return nullptr;
        auto result = std::make_shared<RecordCollection>();
        if (!aFilter.isEmpty() || aFlags != 0) return result;
        for (const StreamFacts &facts : MemoryOffice::The().Streams)
            result->Add(MakeStream(facts.ID), ObjectKey(facts.ID));
        return result;
    }
};

class MemoryPersonQueries : public PersonQueries {
public:
    std::shared_ptr<RecordCollection> GetPersons(const QString &aFilter, qint32 aFlags) override {
        Called("GetPersons");
        if (MemoryOffice::The().Absent == u"GetPersons") return nullptr;
        if (!aFilter.isEmpty() || aFlags != 0) return std::make_shared<RecordCollection>();
        return Those([](const PersonFacts &) { return true; });
    }
    std::shared_ptr<RecordCollection> GetTaxpayers() override {
        Called("GetTaxpayers");
        if (MemoryOffice::The().Absent == u"GetTaxpayers") return nullptr;
        return Those([](const PersonFacts &facts) { return facts.IsTaxpayer; });
    }

private:
    static std::shared_ptr<RecordCollection> Those(bool (*aWanted)(const PersonFacts &)) {
        auto result = std::make_shared<RecordCollection>();
        for (const PersonFacts &facts : MemoryOffice::The().Persons) {
            if (!aWanted(facts)) continue;
            result->Add(MakePerson(facts.ID),
                        MemoryOffice::The().Unkeyed ? QString() : ObjectKey(facts.ID));
        }
        return result;
    }
};

class MemoryRecFactory : public VkRecFactory {
public:
    QString GetPeriodName(qint32 aMonthID) override {
        Called("GetPeriodName");
        return QStringLiteral("период %1").arg(aMonthID);
    }
};

/// Hands on to the library's own files library, which loses no file.
class MemoryFiles : public FilesLibrary {
public:
    explicit MemoryFiles(std::shared_ptr<FilesLibrary> aOwn) : theOwn(std::move(aOwn)) {}
    void SaveTextToFile(const QString &aText, const QString &aFileName, qint32 aCodePage) override {
        Called("SaveTextToFile");
        theOwn->SaveTextToFile(aText, aFileName, aCodePage);
    }
    QString ShortenFilePath(const QString &aPath, QString &, QString &, QString &) override {
        Called("ShortenFilePath");
        return QStringLiteral("...") + aPath.right(20);
    }

private:
    std::shared_ptr<FilesLibrary> theOwn;
};

void RegisterFiles() {
    const QString name = QStringLiteral("Vk_Lib.FilesLibrary");
    ClassRegistry::Unregister(name);
    const auto own = std::dynamic_pointer_cast<FilesLibrary>(ClassRegistry::Create(name));
    ClassRegistry::Register(name, [own] { return std::make_shared<MemoryFiles>(own); });
}

template <class Class>
std::shared_ptr<Class> Made(double aID) {
    auto record = std::make_shared<Class>();
    record->SetID(aID);
    return record;
}

void AddSmallOffice(MemoryOffice &aOffice) {
    aOffice.Persons = {
        {1, QStringLiteral("7701000001"), QStringLiteral("770101001"),
         QStringLiteral("ООО Ромашка"), true, 0, true, true, QStringLiteral("org")},
        {2, QStringLiteral("7701000001"), QStringLiteral("770202002"),
         QStringLiteral("ООО Ромашка, Тверской филиал"), true, 1, false, true,
         QStringLiteral("branch")},
        {3, QStringLiteral("770300000003"), QString(), QStringLiteral("Иванов Иван Иванович"),
         false, 0, false, true, QStringLiteral("man_purple")},
        {4, QStringLiteral("7704000004"), QStringLiteral("770401001"), QStringLiteral("АО Василёк"),
         true, 0, true, false, QStringLiteral("org")},
    };
    aOffice.Streams = {
        {11, 1, QStringLiteral("ИФНС основной"), QStringLiteral("770101001"),
         QStringLiteral("7701"), QStringLiteral("acc_stream")},
        {12, 1, QStringLiteral("ПФР"), QStringLiteral("770101009"), QStringLiteral("087-101"),
         QStringLiteral("acc_stream_pfr")},
        {13, 3, QStringLiteral("Предприниматель"), QString(), QStringLiteral("7703"),
         QStringLiteral("acc_stream")},
    };
    aOffice.Classes = {
        {21,
         QStringLiteral("1151001"),
         QStringLiteral("НДС"),
         false,
         QStringLiteral("doc_blank"),
         {QStringLiteral("Налоговая декларация по налогу на добавленную стоимость")}},
        {22,
         QStringLiteral("1151006"),
         QStringLiteral("Прибыль"),
         false,
         QStringLiteral("doc_blank"),
         {QStringLiteral("Налоговая декларация по налогу на прибыль организаций")}},
        {23,
         QStringLiteral("1151111"),
         QStringLiteral("РСВ"),
         true,
         QStringLiteral("doc_blank"),
         {QStringLiteral("Расчет по страховым взносам")}},
    };
    const QDate today = QDate::currentDate();
    aOffice.Versions = {
        {31, 21, today.addYears(-8), today.addYears(-6), QStringLiteral("НДС 1"),
         QStringLiteral("doc")},
        {32, 21, today.addYears(-3), Empty(), QStringLiteral("НДС 2"), QStringLiteral("doc")},
        {33, 22, today.addYears(-2), today, QStringLiteral("Прибыль 1"), QStringLiteral("doc")},
        {34, 23, Empty(), Empty(), QStringLiteral("РСВ без начала"), QStringLiteral("doc")},
    };
}

}  // namespace

MemoryOffice &MemoryOffice::The() {
    static MemoryOffice office;
    return office;
}

void MemoryOffice::Install() {
    Clear();
    AddSmallOffice(The());
    RegisterClass<MemoryPerson>(QStringLiteral("Vk_Records.VkPerson"));
    RegisterClass<MemoryStream>(QStringLiteral("Vk_Records.VkAccStream"));
    RegisterClass<MemoryClass>(QStringLiteral("Vk_Records.VkTemplType"));
    RegisterClass<MemoryVersion>(QStringLiteral("Vk_Records.VkTemplate"));
    RegisterClass<MemoryRecFactory>(QStringLiteral("Vk_Records.VkRecFactory"));
    RegisterClass<MemoryBlankQueries>(QStringLiteral("Vk_DBProvider.BlankQueries"));
    RegisterClass<MemoryStreamQueries>(QStringLiteral("Vk_DBProvider.DBQAccStream"));
    RegisterClass<MemoryPersonQueries>(QStringLiteral("Vk_DBProvider.PersonQueries"));
    RegisterFiles();
}

void MemoryOffice::Clear() {
    The() = MemoryOffice();
}

std::shared_ptr<VkPerson> MakePerson(double aID) {
    return Made<MemoryPerson>(aID);
}
std::shared_ptr<VkAccStream> MakeStream(double aID) {
    return Made<MemoryStream>(aID);
}
std::shared_ptr<VkTemplType> MakeClass(double aID) {
    return Made<MemoryClass>(aID);
}
std::shared_ptr<VkTemplate> MakeVersion(double aID) {
    return Made<MemoryVersion>(aID);
}

}  // namespace VkTests
