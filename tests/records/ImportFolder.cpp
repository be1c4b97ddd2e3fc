#include "ImportFolder.h"

#include <QDir>
#include <QFile>

namespace VkTests {

namespace {

struct FirstFile {
    const char *Name;
    const char *Text;
};

constexpr FirstFile theFirstFiles[] = {
    {"persons.csv",
     "id;kind;inn;kpp;display_name;owner_name;is_main;parent_id\n"
     "1;1;7701000001;770101001;ООО \"Ромашка\";Ромашка, ООО;1;\n"
     "2;2;7701000001;770243001;Филиал;Ромашка, филиал;0;1\n"
     "3;3;770300000003;;ИП Иванов И. И.;Иванов И. И.;0;\n"},
    {"streams.csv",
     "id;person_id;type_id;display_name;kpp;office_codes;is_closed\n"
     "11;1;1;ИФНС;770101001;7701, 7702;0\n"
     "12;3;9;Финансовый рынок;;45;1\n"},
    {"forms.csv", "id;knd;short_name;is_excluded;icon_key\n21;1151001;НДС;0;doc_blank\n"},
    {"versions.csv",
     "id;templ_type_id;beg_date;end_date;display_name;icon_key\n"
     "31;21;2019-01-01;;НДС 2;doc_blank\n"},
    {"names.csv", "templ_type_id;name_order;full_name\n21;1;Первое имя\n"},
    {"periods.csv", "templ_type_id;the_year;month_id\n21;2020;13\n"},
    {"categories.csv",
     "templ_type_id;category_id;stream_type;allowed_for_main;allowed_for_branch\n21;1;4;1;0\n"},
};

}  // namespace

ImportFolder::ImportFolder() {
    for (const FirstFile &file : theFirstFiles) Write(QString::fromLatin1(file.Name), file.Text);
}

void ImportFolder::Write(const QString &aName, const QByteArray &aBytes) const {
    QFile file(theFolder.filePath(aName));
    if (!file.open(QIODevice::WriteOnly) || file.write(aBytes) != aBytes.size()) qFatal("no file");
}

void ImportFolder::Remove(const QString &aName) const {
    if (!QFile::remove(theFolder.filePath(aName))) qFatal("no such file");
}

QByteArray ImportFolder::First(const QString &aName) {
    for (const FirstFile &file : theFirstFiles) {
        if (aName == QLatin1String(file.Name)) return file.Text;
    }
    qFatal("no such file");
}

QMap<QString, QByteArray> FilesIn(const QString &aFolder) {
    QMap<QString, QByteArray> files;
    for (const QString &name : QDir(aFolder).entryList(QDir::Files | QDir::Hidden)) {
        QFile file(QDir(aFolder).filePath(name));
        if (!file.open(QIODevice::ReadOnly)) qFatal("no file");
        files[name] = file.readAll();
    }
    return files;
}

}  // namespace VkTests
