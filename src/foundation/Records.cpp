#include <cmath>
#include <iterator>

#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/Providers.h>
#include <Vk_DocQuery/Records.h>

namespace Vk_DocQuery {

namespace {

[[noreturn]] void RaiseMemberMissing(const char *aMember) {
    throw Failure(MemberNotSupported, QStringLiteral("Record"),
                  QStringLiteral("Объект не имеет члена \"%1\".").arg(QLatin1String(aMember)));
}

}  // namespace

Record::~Record() = default;
VkTemplate::~VkTemplate() = default;
VkTemplType::~VkTemplType() = default;
VkAccStream::~VkAccStream() = default;
VkPerson::~VkPerson() = default;

Recordset::~Recordset() = default;
BlankQueries::~BlankQueries() = default;
DBQAccStream::~DBQAccStream() = default;
PersonQueries::~PersonQueries() = default;
VkRecFactory::~VkRecFactory() = default;
FilesLibrary::~FilesLibrary() = default;

QString Record::GetDisplayName() const {
    RaiseMemberMissing("GetDisplayName");
}
QString Record::GetIconKey() const {
    RaiseMemberMissing("GetIconKey");
}
QString Record::GetIconKeyAsAccPerson() const {
    RaiseMemberMissing("GetIconKeyAsAccPerson");
}
std::shared_ptr<VkTemplType> Record::TemplateType() const {
    RaiseMemberMissing("TemplateType");
}
QString Record::KND() const {
    RaiseMemberMissing("KND");
}
QString Record::ShortName() const {
    RaiseMemberMissing("ShortName");
}
QString Record::DisplayName() const {
    RaiseMemberMissing("DisplayName");
}
QString Record::GetOfficeCodeForDisplay() const {
    RaiseMemberMissing("GetOfficeCodeForDisplay");
}
QString Record::Kpp() const {
    RaiseMemberMissing("Kpp");
}
QString Record::Inn() const {
    RaiseMemberMissing("Inn");
}
std::shared_ptr<VkPerson> Record::Person() const {
    RaiseMemberMissing("Person");
}
std::shared_ptr<VkPerson> Record::GetParentOrganization() const {
    RaiseMemberMissing("GetParentOrganization");
}
LooseValue Record::BegDate() const {
    RaiseMemberMissing("BegDate");
}
LooseValue Record::EndDate() const {
    RaiseMemberMissing("EndDate");
}

QString ObjectKey(double aID) {
    // Lists ask for the keys of all their records: a whole number is written in one go.
    constexpr double bound = 1e15;
    if (!(aID >= 0 && aID < bound) || aID != std::trunc(aID)) return u'_' + GeneralNumberText(aID);
    char16_t text[17];
    char16_t *const end = std::end(text);
    char16_t *begin = end;
    auto number = static_cast<quint64>(aID);
    do {
        *--begin = static_cast<char16_t>(u'0' + number % 10);
        number /= 10;
    } while (number != 0);
    *--begin = u'_';
    return QStringView(begin, end - begin).toString();
}

}  // namespace Vk_DocQuery
