// A host that brings its own records, made of installed headers alone; it saves files through the
// library. own_records FOLDER: exit code 0 if a record is made and saved, and a save that fails
// tells its reason and leaves the file.
#include <cstdio>

#include <QFile>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/Providers.h>
#include <Vk_DocQuery/VkDocQueryData.h>

using namespace Vk_DocQuery;

namespace {

class Person : public VkPerson {
public:
    double ID() const override { return theID; }
    void SetID(double aID) override { theID = aID; }
    QString Inn() const override { return QStringLiteral("7701000001"); }
    QString Kpp() const override { return QStringLiteral("770101001"); }
    bool IsBranch() const override { return false; }
    bool IsOrganization() const override { return true; }
    std::shared_ptr<VkPerson> GetParentOrganization() const override {
        return std::make_shared<Person>();
    }
    QString GetDisplayName() const override { return QStringLiteral("ООО Ромашка"); }
    QString GetDisplayNameAsAccPerson() const override { return GetDisplayName(); }
    QString GetIconKeyAsAccPerson() const override { return QStringLiteral("org"); }
    bool IsMainOrganization() const override { return true; }

private:
    double theID = 0;
};

QByteArray BytesOf(const QString &aName) {
    QFile file(aName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int Complain(const char *aWhat, const QString &aText) {
    std::fprintf(stderr, "%s: %s\n", aWhat, qUtf8Printable(aText));
    return 1;
}

}  // namespace

int main(int aCount, char **aArguments) {
    if (aCount != 2) return Complain("usage", QStringLiteral("own_records FOLDER"));
    const QString folder = QString::fromUtf8(aArguments[1]);
    RegisterClass<Person>(QStringLiteral("Vk_Records.VkPerson"));

    auto person = std::dynamic_pointer_cast<VkPerson>(
        ClassRegistry::Create(QStringLiteral("Vk_Records.VkPerson")));
    if (!person) return Complain("registry", QStringLiteral("no person was made"));
    person->SetID(12345);

    VkDocQueryData record;
    record.IsTaxpayers = true;
    record.TaxpayersList = std::make_shared<RecordCollection>();
    record.TaxpayersList->Add(person, ObjectKey(person->ID()));
    const QString name = folder + QStringLiteral("/a.qvk");
    if (!record.WriteToXmlFile(name)) return Complain("save", record.LastError);
    if (!record.LastError.isEmpty()) return Complain("LastError after a save", record.LastError);
    const QByteArray text = BytesOf(name);
    if (!text.contains("<i id=\"12345\" />\r\n") || text.count('\n') != 44)
        return Complain("saved text", QString::fromLatin1(text));

    if (record.WriteToXmlFile(folder + QStringLiteral("/absent/a.qvk")))
        return Complain("save", QStringLiteral("it went into a folder that is not there"));
    if (record.LastError.isEmpty()) return Complain("LastError", QStringLiteral("is empty"));
    record.Notes = QChar(0x1A);
    if (record.WriteToXmlFile(name))
        return Complain("save", QStringLiteral("a file came about that nobody can read"));
    if (BytesOf(name) != text) return Complain("saved file", QStringLiteral("it is not as it was"));
    std::printf("LastError: %s\n", qUtf8Printable(record.LastError));
    return 0;
}
