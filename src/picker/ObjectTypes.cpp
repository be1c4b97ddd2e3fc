#include "picker/ObjectTypes.h"

#include <algorithm>

#include "foundation/Clock.h"
#include "foundation/mVkCommonCalc.h"
#include "foundation/mVkDBProvider.h"
#include "foundation/Present.h"
#include "lists/RecordIcons.h"

namespace Vk_DocQuery {

namespace {

/// Four years. The template browser looks further back.
constexpr int theOfferedDays = 1461;

std::shared_ptr<RecordCollection> LoadTemplates(bool aClasses) {
    return GetBlankQueries().GetTemplates(Today().addDays(-theOfferedDays), Null(), aClasses);
}

std::shared_ptr<RecordCollection> LoadTemplateVersions() {
    return LoadTemplates(false);
}

std::shared_ptr<RecordCollection> LoadTemplateClasses() {
    return LoadTemplates(true);
}

std::shared_ptr<RecordCollection> LoadAccountStreams() {
    return GetDBQAccStream().GetAccStreams(QString(), 0);
}

std::shared_ptr<RecordCollection> LoadTaxpayers() {
    return GetPersonQueries().GetTaxpayers();
}

std::shared_ptr<RecordCollection> LoadMainOrganizations() {
    const auto persons = GetPersonQueries().GetPersons(QString(), 0);
    auto mainOrganizations = std::make_shared<RecordCollection>();
    for (const std::shared_ptr<Record> &record : Present(persons, "GetPersons")) {
        const auto person = std::dynamic_pointer_cast<VkPerson>(record);
        if (Present(person, "VkPerson").IsMainOrganization()) mainOrganizations->Add(record);
    }
    return mainOrganizations;
}

QString FixedDate(const LooseValue &aDate) {
    return VarToStrDef(aDate, QString());
}

SearchedCells ShowTemplateVersion(const Record &aVersion, ListRow &aRow) {
    SetRecordIcon(aRow, aVersion, aVersion.GetIconKey());
    aRow.SetCell(
        1, FixedDate(aVersion.BegDate()) + QStringLiteral(" - ") + FixedDate(aVersion.EndDate()));
    aRow.SetCell(2, aVersion.GetDisplayName());
    aRow.SetCell(3, Present(aVersion.TemplateType(), "TemplateType").KND());
    return {2, 3};
}

SearchedCells ShowTemplateClass(const Record &aClass, ListRow &aRow) {
    SetRecordIcon(aRow, aClass, aClass.GetIconKey());
    aRow.SetCell(1, aClass.ShortName());
    aRow.SetCell(2, aClass.KND());
    return {1, 2};
}

SearchedCells ShowAccountStream(const Record &aStream, ListRow &aRow) {
    SetRecordIcon(aRow, aStream, aStream.GetIconKey());
    aRow.SetCell(1, aStream.DisplayName());
    aRow.SetCell(2, aStream.GetOfficeCodeForDisplay());
    aRow.SetCell(3, aStream.Kpp());
    const std::shared_ptr<VkPerson> held = aStream.Person();
    const VkPerson &person = Present(held, "Person");
    aRow.SetCell(4, person.Inn());
    aRow.SetCell(5, person.GetDisplayName());
    SetRecordCellIcon(aRow, 5, person, person.GetIconKeyAsAccPerson());
    return {1, 5};
}

SearchedCells ShowMainOrganization(const Record &aPerson, ListRow &aRow) {
    SetRecordIcon(aRow, aPerson, aPerson.GetIconKeyAsAccPerson());
    aRow.SetCell(1, aPerson.Inn());
    aRow.SetCell(2, aPerson.Kpp());
    aRow.SetCell(3, aPerson.GetDisplayName());
    return {1, 3};
}

SearchedCells ShowTaxpayer(const Record &aPerson, ListRow &aRow) {
    const SearchedCells own = ShowMainOrganization(aPerson, aRow);
    const std::shared_ptr<VkPerson> held = aPerson.GetParentOrganization();
    const VkPerson &parent = Present(held, "GetParentOrganization");
    if (parent.ID() == 0) {
        aRow.SetCell(4, QString());
        return own;
    }
    aRow.SetCell(4, parent.GetDisplayNameAsAccPerson());
    SetRecordCellIcon(aRow, 4, parent, parent.GetIconKeyAsAccPerson());
    return {1, 4};
}

/// The title of the first alone does not begin with the word of adding.
const std::vector<ObjectsTypeFacts> &AllFacts() {
    static const ObjectsTypeFacts::Column pictures{QStringLiteral("*"), 600};
    static const std::vector<ObjectsTypeFacts> facts = {
        {TemplateVersions,
         QStringLiteral("Бланки отчетных документов в различных версиях"),
         QStringLiteral("бланки отчетных документов"),
         {pictures,
          {QStringLiteral("Срок действия"), 2100},
          {QStringLiteral("Наименование"), 9000},
          {QStringLiteral("КНД"), 2100}},
         LoadTemplateVersions,
         ShowTemplateVersion},
        {TemplateClasses,
         QStringLiteral("Добавление бланков отчетных документов"),
         QStringLiteral("бланки отчетных документов"),
         {pictures, {QStringLiteral("Наименование"), 9000}, {QStringLiteral("КНД"), 2100}},
         LoadTemplateClasses,
         ShowTemplateClass},
        {AccountStreams,
         QStringLiteral("Добавление комплектов отчетности"),
         QStringLiteral("комплекты отчетности"),
         {pictures,
          {QStringLiteral("Название"), 4500},
          {QStringLiteral("К.орг."), 1500},
          {QStringLiteral("КПП"), 1200},
          {QStringLiteral("ИНН"), 1500},
          {QStringLiteral("Организация/ФИО"), 6000}},
         LoadAccountStreams,
         ShowAccountStream},
        {TaxpayerPersons,
         QStringLiteral("Добавление налогоплательщиков, сдающих отчетность"),
         QStringLiteral("налогоплательщики"),
         {pictures,
          {QStringLiteral("ИНН"), 1500},
          {QStringLiteral("КПП"), 1200},
          {QStringLiteral("Наименование/ФИО"), 6000},
          {QStringLiteral("Головная организация"), 6000}},
         LoadTaxpayers,
         ShowTaxpayer},
        {MainOrganizations,
         QStringLiteral("Добавление головных организаций"),
         QStringLiteral("головные организации"),
         {pictures,
          {QStringLiteral("ИНН"), 1500},
          {QStringLiteral("КПП"), 1200},
          {QStringLiteral("Наименование/ФИО"), 6000}},
         LoadMainOrganizations,
         ShowMainOrganization},
    };
    return facts;
}

}  // namespace

const ObjectsTypeFacts *FactsOfObjectsType(qint32 aType) {
    const auto &all = AllFacts();
    const auto found = std::find_if(
        all.begin(), all.end(), [=](const ObjectsTypeFacts &facts) { return facts.Type == aType; });
    return found == all.end() ? nullptr : &*found;
}

}  // namespace Vk_DocQuery
