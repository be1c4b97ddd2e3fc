#include <algorithm>
#include <unordered_map>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/Providers.h>
#include <Vk_DocQuery/Supplier.h>
#include <Vk_DocQuery/SupplierNotes.h>

namespace Vk_DocQuery {

namespace {

using Source = std::shared_ptr<Supplier>;

template <class Facts>
using ByID = std::unordered_map<double, Facts>;

[[noreturn]] void RaiseMissing(const char16_t *aClass, double aID) {
    throw Failure(
        InvalidArgument, QStringLiteral("Supplier"),
        QStringLiteral("Объекта %1 с идентификатором %2 нет: он удален или взят из другой "
                       "базы.")
            .arg(QString::fromUtf16(aClass), GeneralNumberText(aID)));
}

template <class Facts>
ByID<Facts> Indexed(const std::vector<Facts> &aAll) {
    ByID<Facts> index;
    for (const Facts &facts : aAll) index.emplace(facts.ID, facts);
    return index;
}

template <class Facts>
const Facts &Found(const ByID<Facts> &aIndex, const char16_t *aClass, double aID) {
    const auto found = aIndex.find(aID);
    if (found == aIndex.end()) RaiseMissing(aClass, aID);
    return found->second;
}

constexpr char16_t thePerson[] = u"Vk_Records.VkPerson";
constexpr char16_t theStream[] = u"Vk_Records.VkAccStream";
constexpr char16_t theForm[] = u"Vk_Records.VkTemplType";
constexpr char16_t theVersion[] = u"Vk_Records.VkTemplate";

// ---- Single records

template <class Facts>
Facts OneOf(const std::vector<Facts> &aAll, const char16_t *aClass, double aID) {
    const auto found =
        std::find_if(aAll.begin(), aAll.end(), [=](const Facts &facts) { return facts.ID == aID; });
    if (found == aAll.end()) RaiseMissing(aClass, aID);
    return *found;
}

/// While a file is read its identities come one by one, and the supplier is asked once for them
/// all.
template <class Facts>
Facts One(Supplier &aSupplier, std::vector<Facts> (Supplier::*aAsk)(), const char16_t *aClass,
          double aID) {
    const QString name = QStringLiteral("Supplier %1 %2")
                             .arg(QStringView(aClass))
                             .arg(reinterpret_cast<quintptr>(&aSupplier));
    std::shared_ptr<void> *notes = SupplierNotes(name);
    if (!notes) return OneOf((aSupplier.*aAsk)(), aClass, aID);
    if (!*notes) {
        // Asking may move the place of the notes.
        auto index = std::make_shared<ByID<Facts>>(Indexed((aSupplier.*aAsk)()));
        notes = SupplierNotes(name);
        *notes = std::move(index);
    }
    return Found(*static_cast<ByID<Facts> *>(notes->get()), aClass, aID);
}

// ---- Records

class SuppliedPerson final : public VkPerson {
public:
    SuppliedPerson() = default;
    explicit SuppliedPerson(Source aSource) : theSource(std::move(aSource)) {}
    SuppliedPerson(PersonFacts aFacts, std::shared_ptr<VkPerson> aParent)
        : theFacts(std::move(aFacts)), theParent(std::move(aParent)) {}

    double ID() const override { return theFacts.ID; }
    void SetID(double aID) override {
        theFacts = One(*theSource, &Supplier::Persons, thePerson, aID);
        if (!IsBranch()) return;
        theParent = std::make_shared<SuppliedPerson>(
            One(*theSource, &Supplier::Persons, thePerson, theFacts.ParentID), nullptr);
    }
    QString Inn() const override { return theFacts.Inn; }
    QString Kpp() const override { return theFacts.Kpp; }
    bool IsBranch() const override { return theFacts.Kind == PersonFacts::Branch; }
    bool IsOrganization() const override { return theFacts.Kind != PersonFacts::PrivatePerson; }
    std::shared_ptr<VkPerson> GetParentOrganization() const override {
        static const std::shared_ptr<VkPerson> nobody = std::make_shared<SuppliedPerson>();
        return theParent ? theParent : nobody;
    }
    QString GetDisplayName() const override { return theFacts.Name; }
    QString GetDisplayNameAsAccPerson() const override {
        return theFacts.OwnerName.isEmpty() ? theFacts.Name : theFacts.OwnerName;
    }
    QString GetIconKeyAsAccPerson() const override {
        if (!theFacts.IconKey.isEmpty()) return theFacts.IconKey;
        if (IsBranch()) return QStringLiteral("branch");
        if (!IsOrganization()) return QStringLiteral("man_purple");
        return theFacts.IsMain ? QStringLiteral("orgs") : QStringLiteral("org");
    }
    bool IsMainOrganization() const override { return theFacts.IsMain; }

private:
    Source theSource;
    PersonFacts theFacts;
    std::shared_ptr<VkPerson> theParent;
};

class SuppliedStream final : public VkAccStream {
public:
    explicit SuppliedStream(Source aSource) : theSource(std::move(aSource)) {}
    SuppliedStream(StreamFacts aFacts, std::shared_ptr<VkPerson> aPerson)
        : theFacts(std::move(aFacts)), thePerson(std::move(aPerson)) {}

    double ID() const override { return theFacts.ID; }
    void SetID(double aID) override {
        theFacts = One(*theSource, &Supplier::Streams, theStream, aID);
        thePerson = std::make_shared<SuppliedPerson>(theSource);
        thePerson->SetID(theFacts.PersonID);
    }
    std::shared_ptr<VkPerson> Person() const override { return thePerson; }
    QString DisplayName() const override { return theFacts.Name; }
    QString Kpp() const override { return theFacts.Kpp; }
    QString GetIconKey() const override { return theFacts.IconKey; }
    QString GetOfficeCodeForDisplay() const override { return theFacts.OfficeCodes; }

private:
    Source theSource;
    StreamFacts theFacts;
    std::shared_ptr<VkPerson> thePerson;
};

class SuppliedForm final : public VkTemplType {
public:
    explicit SuppliedForm(Source aSource) : theSource(std::move(aSource)) {}
    explicit SuppliedForm(FormFacts aFacts) : theFacts(std::move(aFacts)) {}

    double ID() const override { return theFacts.ID; }
    void SetID(double aID) override { theFacts = One(*theSource, &Supplier::Forms, theForm, aID); }
    QString KND() const override { return theFacts.Knd; }
    QString ShortName() const override { return theFacts.ShortName; }
    bool IsExcludedFromSearch() const override { return theFacts.IsExcludedFromSearch; }
    QString GetIconKey() const override { return theFacts.IconKey; }

private:
    Source theSource;
    FormFacts theFacts;
};

LooseValue DayOrEmpty(QDate aDay) {
    return aDay.isValid() ? LooseValue(aDay) : LooseValue(Empty());
}

class SuppliedVersion final : public VkTemplate {
public:
    explicit SuppliedVersion(Source aSource) : theSource(std::move(aSource)) {}
    SuppliedVersion(VersionFacts aFacts, std::shared_ptr<VkTemplType> aForm)
        : theFacts(std::move(aFacts)), theType(std::move(aForm)) {}

    double ID() const override { return theFacts.ID; }
    void SetID(double aID) override {
        theFacts = One(*theSource, &Supplier::Versions, theVersion, aID);
        theType = std::make_shared<SuppliedForm>(theSource);
        theType->SetID(theFacts.FormID);
    }
    LooseValue BegDate() const override { return DayOrEmpty(theFacts.FirstDay); }
    LooseValue EndDate() const override { return DayOrEmpty(theFacts.LastDay); }
    std::shared_ptr<VkTemplType> TemplateType() const override { return theType; }
    QString GetDisplayName() const override { return theFacts.Name; }
    QString GetIconKey() const override { return theFacts.IconKey; }

private:
    Source theSource;
    VersionFacts theFacts;
    std::shared_ptr<VkTemplType> theType;
};

// ---- Providers

/// Rows of loose values under the names of their fields.
class SuppliedRows final : public Recordset {
public:
    using Row = std::vector<LooseValue>;

    SuppliedRows(QStringList aFields, std::vector<Row> aRows)
        : theFields(std::move(aFields)), theRows(std::move(aRows)) {}

    void MoveFirst() override {
        theAt = 0;
        CheckRow();
    }
    void MoveNext() override {
        if (!EndOfData()) ++theAt;
    }
    bool EndOfData() const override { return theAt >= theRows.size(); }
    LooseValue Value(const QString &aField) const override {
        CheckRow();
        const auto field = theFields.indexOf(aField);
        if (field < 0) {
            throw Failure(InvalidArgument, QStringLiteral("Supplier"),
                          QStringLiteral("В наборе записей нет поля \"%1\".").arg(aField));
        }
        return theRows[theAt][static_cast<std::size_t>(field)];
    }

private:
    void CheckRow() const {
        if (!EndOfData()) return;
        throw Failure(SubscriptOutOfRange, QStringLiteral("Supplier"),
                      QStringLiteral("В наборе записей нет текущей строки."));
    }

    QStringList theFields;
    std::vector<Row> theRows;
    std::size_t theAt = 0;
};

/// The persons of the supplier as records; a branch has the record of its organisation.
class PersonRecords {
public:
    explicit PersonRecords(Supplier &aSupplier)
        : theFacts(aSupplier.Persons()), theIndex(Indexed(theFacts)) {}

    const std::vector<PersonFacts> &Facts() const { return theFacts; }
    std::shared_ptr<VkPerson> Record(double aID) {
        std::shared_ptr<VkPerson> &made = theMade[aID];
        if (made) return made;
        const PersonFacts &facts = Found(theIndex, thePerson, aID);
        std::shared_ptr<VkPerson> parent;
        if (facts.Kind == PersonFacts::Branch) parent = Parent(facts.ParentID);
        return made = std::make_shared<SuppliedPerson>(facts, std::move(parent));
    }

private:
    /// Whatever kind it is of, its own parent does not count: no ring can come about.
    std::shared_ptr<VkPerson> Parent(double aID) {
        std::shared_ptr<VkPerson> &made = theParents[aID];
        if (!made)
            made = std::make_shared<SuppliedPerson>(Found(theIndex, thePerson, aID), nullptr);
        return made;
    }

    std::vector<PersonFacts> theFacts;
    ByID<PersonFacts> theIndex;
    ByID<std::shared_ptr<VkPerson>> theMade;
    ByID<std::shared_ptr<VkPerson>> theParents;
};

class SuppliedPersons final : public PersonQueries {
public:
    explicit SuppliedPersons(Source aSource) : theSource(std::move(aSource)) {}

    std::shared_ptr<RecordCollection> GetPersons(const QString & /*aFilter*/,
                                                 qint32 /*aFlags*/) override {
        return Those([](const PersonFacts &) { return true; });
    }
    std::shared_ptr<RecordCollection> GetTaxpayers() override {
        return Those([](const PersonFacts &person) { return person.HandsInReports; });
    }

private:
    std::shared_ptr<RecordCollection> Those(bool (*aIsWanted)(const PersonFacts &)) {
        PersonRecords records(*theSource);
        auto persons = std::make_shared<RecordCollection>();
        for (const PersonFacts &facts : records.Facts()) {
            if (aIsWanted(facts)) persons->Add(records.Record(facts.ID), ObjectKey(facts.ID));
        }
        return persons;
    }

    Source theSource;
};

class SuppliedStreams final : public DBQAccStream {
public:
    explicit SuppliedStreams(Source aSource) : theSource(std::move(aSource)) {}

    std::shared_ptr<RecordCollection> GetAccStreams(const QString & /*aFilter*/,
                                                    qint32 /*aFlags*/) override {
        auto streams = std::make_shared<RecordCollection>();
        const std::vector<StreamFacts> all = theSource->Streams();
        if (all.empty()) return streams;
        PersonRecords persons(*theSource);
        for (const StreamFacts &facts : all) {
            streams->Add(std::make_shared<SuppliedStream>(facts, persons.Record(facts.PersonID)),
                         ObjectKey(facts.ID));
        }
        return streams;
    }

private:
    Source theSource;
};

QDate SideOf(const LooseValue &aDate) {
    return IsNull(aDate) || IsEmpty(aDate) ? QDate() : ToDate(aDate);
}

class SuppliedBlanks final : public BlankQueries {
public:
    explicit SuppliedBlanks(Source aSource) : theSource(std::move(aSource)) {}

    std::shared_ptr<RecordCollection> GetTemplates(const LooseValue &aDateFrom,
                                                   const LooseValue &aDateTo,
                                                   bool aClasses) override {
        const QDate from = SideOf(aDateFrom);
        const QDate to = SideOf(aDateTo);
        const ByID<FormFacts> forms = Indexed(theSource->Forms());
        ByID<std::shared_ptr<VkTemplType>> made;
        auto records = std::make_shared<RecordCollection>();
        for (const VersionFacts &version : theSource->Versions()) {
            if (from.isValid() && version.LastDay.isValid() && version.LastDay < from) continue;
            if (to.isValid() && version.FirstDay.isValid() && version.FirstDay > to) continue;
            auto &form = made[version.FormID];
            if (!form) form = std::make_shared<SuppliedForm>(Found(forms, theForm, version.FormID));
            if (aClasses)
                records->AddIfAbsent(form, ObjectKey(version.FormID));
            else
                records->Add(std::make_shared<SuppliedVersion>(version, form),
                             ObjectKey(version.ID));
        }
        return records;
    }

    void GetTemplTypeAvailability(qint32 /*aKind*/, double aID,
                                  std::shared_ptr<Recordset> &rCategories,
                                  std::shared_ptr<Recordset> &rTimes) override {
        const FormFacts form = One(*theSource, &Supplier::Forms, theForm, aID);
        std::vector<SuppliedRows::Row> categories;
        for (const FormFacts::Category &category : form.Categories) {
            categories.push_back({category.Taxpayers, category.StreamType, category.IsForMain,
                                  category.IsForBranches});
        }
        std::vector<SuppliedRows::Row> times;
        for (const FormFacts::Period &period : form.Periods)
            times.push_back({period.Year, period.Code});
        rCategories = std::make_shared<SuppliedRows>(
            QStringList{QStringLiteral("TPCategory_ID"), QStringLiteral("AccStreamType"),
                        QStringLiteral("AllowedForMainOrg"), QStringLiteral("AllowedForBranch")},
            std::move(categories));
        rTimes = std::make_shared<SuppliedRows>(
            QStringList{QStringLiteral("the_year"), QStringLiteral("month_id")}, std::move(times));
    }

    std::shared_ptr<Recordset> GetTemplTypeNames(double aID) override {
        std::vector<SuppliedRows::Row> names;
        for (const QString &name : One(*theSource, &Supplier::Forms, theForm, aID).FullNames)
            names.push_back({name});
        return std::make_shared<SuppliedRows>(QStringList{QStringLiteral("full_name")},
                                              std::move(names));
    }

private:
    Source theSource;
};

template <class Class>
void Enter(const char16_t *aName, const Source &aSource) {
    ClassRegistry::Register(QString::fromUtf16(aName),
                            [aSource] { return std::make_shared<Class>(aSource); });
}

}  // namespace

Supplier::Supplier() = default;
Supplier::~Supplier() = default;

std::vector<PersonFacts> Supplier::Persons() {
    return {};
}

std::vector<StreamFacts> Supplier::Streams() {
    return {};
}

std::vector<FormFacts> Supplier::Forms() {
    return {};
}

std::vector<VersionFacts> Supplier::Versions() {
    return {};
}

void EnterSupplier(std::shared_ptr<Supplier> aSupplier) {
    if (!aSupplier) {
        throw Failure(ObjectNotSet, QStringLiteral("EnterSupplier"),
                      QStringLiteral("Объект не задан: Supplier."));
    }
    Enter<SuppliedPerson>(thePerson, aSupplier);
    Enter<SuppliedStream>(theStream, aSupplier);
    Enter<SuppliedForm>(theForm, aSupplier);
    Enter<SuppliedVersion>(theVersion, aSupplier);
    Enter<SuppliedPersons>(u"Vk_DBProvider.PersonQueries", aSupplier);
    Enter<SuppliedStreams>(u"Vk_DBProvider.DBQAccStream", aSupplier);
    Enter<SuppliedBlanks>(u"Vk_DBProvider.BlankQueries", aSupplier);
}

}  // namespace Vk_DocQuery
