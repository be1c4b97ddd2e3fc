#include "SmallOffice.h"

#include <Vk_Records/Database.h>

namespace VkTests {

namespace {

constexpr const char16_t *theStatements[] = {
    u"INSERT INTO person VALUES (1, 1, '7701000001', '770101001', 'ООО \"Ромашка\"', 'Ромашка, "
    u"ООО', 1, "
    u"NULL, NULL)",
    u"INSERT INTO person VALUES (2, 2, '7701000001', '770243001', 'ООО \"Ромашка\", филиал', "
    u"'Ромашка, филиал', 0, 1, 1)",
    u"INSERT INTO person VALUES (3, 3, '770300000003', '', 'ИП Иванов И. И.', 'Иванов И. И.', 0, "
    u"NULL, "
    u"NULL)",
    u"INSERT INTO person VALUES (4, 1, '7704000004', '770401001', 'АО \"Василёк\"', 'Василёк, АО', "
    u"0, "
    u"NULL, NULL)",
    u"INSERT INTO person VALUES (5, 2, '7704000004', '770443001', 'АО \"Василёк\", филиал', "
    u"'Василёк, филиал', 0, 4, 1)",
    u"INSERT INTO acc_stream VALUES (11, 1, 1, 'ИФНС', '770101001', '7701, 7702', 0)",
    u"INSERT INTO acc_stream VALUES (12, 1, 2, 'ПФР', '770101009', '087-101', 1)",
    u"INSERT INTO acc_stream VALUES (13, 3, 3, 'Росстат', '', '77-01', 0)",
    u"INSERT INTO acc_stream VALUES (15, 5, 9, 'Финансовый рынок', '770443001', '45', 0)",
    u"INSERT INTO templ_type VALUES (21, '1151001', 'НДС', 0, 'doc_blank')",
    u"INSERT INTO templ_type VALUES (22, '1151006', 'Прибыль', 1, '')",
    u"INSERT INTO templ_type VALUES (23, '', 'Письмо', 0, 'doc')",
    u"INSERT INTO templ_type VALUES (24, '1151111', 'РСВ', 0, 'doc_blank')",
    u"INSERT INTO template VALUES (31, 21, '2015-01-01', '2018-12-31', 'НДС 1', 'doc_archived')",
    u"INSERT INTO template VALUES (32, 21, '2019-01-01', NULL, 'НДС 2', 'doc_blank')",
    u"INSERT INTO template VALUES (33, 22, NULL, '2016-06-30', 'Прибыль 1', '')",
    u"INSERT INTO template VALUES (34, 23, NULL, NULL, 'Письмо 1', 'doc')",
    u"INSERT INTO templ_type_name VALUES (21, 2, 'Второе имя')",
    u"INSERT INTO templ_type_name VALUES (21, 1, 'Первое имя')",
    u"INSERT INTO templ_type_name VALUES (21, 3, '')",
    u"INSERT INTO templ_type_time VALUES (21, 2020, 13)",
    u"INSERT INTO templ_type_time VALUES (21, 2019, 18)",
    u"INSERT INTO templ_type_category VALUES (21, 2, 1, 0, 1)",
    u"INSERT INTO templ_type_category VALUES (21, 1, 4, 1, 0)",
};

}  // namespace

QString OpenSmallOffice(OfficeFolder &aFolder) {
    QString address = aFolder.NewAddress();
    Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::Empty);
    QStringList statements;
    for (const char16_t *statement : theStatements) statements << QString::fromUtf16(statement);
    aFolder.Tamper(address, statements);
    return address;
}

}  // namespace VkTests
